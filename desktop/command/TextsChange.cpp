#include "desktop/command/TextsChange.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CBlock_func.h"
#include "basekit/io/CNamed_value_manip.h"
#include "basekit/value/VariableValues.h"

namespace desktop {

namespace {

constexpr wchar_t const * kWords[] = {L"Rename", L"Add", L"Remove"};

AString WithValue(AString const & variation, AString const & name, Value const & value) {
  VariableValues values;
  bool const isFit =
      VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true) && values.Add(name, value);
  return isFit ? values.GetVariationKey() : variation;
}

AString WithoutValue(AString const & variation, AString const & name, Value const & value) {
  constexpr double kEqual = 1e-14;
  VariableValues values;
  bool const isRead = VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true);
  Value const * const found = isRead ? values.Find(name) : nullptr;
  if (!found || Value::Compare(*found, value, {kEqual, kEqual}, {0.0, 0.0}) != 0)
    return variation;
  values.Remove(name);
  return values.GetVariationKey();
}

AString WithName(AString const & variation, AString const & name, AString const & newName) {
  VariableValues values;
  bool const isRead = VariableValues::ResolveVariationKey(variation, nullptr, values, nullptr, true);
  Value const * const found = isRead ? values.Find(name) : nullptr;
  if (!found)
    return variation;
  Value const value = *found;
  values.Remove(name);
  return values.Add(newName, value) ? values.GetVariationKey() : variation;
}

} // namespace

AString TextsChange::Apply(AString const & variation) const {
  if (kind == Kind::kRename)
    return WithName(variation, name, other);
  Value value;
  if (!value.SetConstantText(other))
    return variation;
  return kind == Kind::kAdd ? WithValue(variation, name, value) : WithoutValue(variation, name, value);
}

TextsChange TextsChange::Inverse() const {
  if (kind == Kind::kRename)
    return {kind, other, name};
  return {kind == Kind::kAdd ? Kind::kRemove : Kind::kAdd, name, other};
}

TextsChanges InverseOf(TextsChanges const & changes) {
  TextsChanges inverse;
  for (auto change = changes.rbegin(); change != changes.rend(); ++change)
    inverse.push_back(change->Inverse());
  return inverse;
}

void WriteTextsChanges(TextsChanges const & changes, io::CBlock & block) {
  for (TextsChange const & change : changes) {
    io::CBlock_func item(kWords[static_cast<int>(change.kind)]);
    item << io::named(L"Name", change.name) << io::named(L"Other", change.other);
    block << item;
  }
}

TextsChanges ReadTextsChanges(io::CBlock const & block) {
  TextsChanges changes;
  for (auto const & child : block) {
    io::CBlock_ptr<io::CBlock_func> const item(child);
    for (int kind = 0; item && kind < 3; ++kind) {
      if (item->Name() != kWords[kind])
        continue;
      changes.push_back({static_cast<TextsChange::Kind>(kind), AString(), AString()});
      *item >> io::named(L"Name", changes.back().name) >> io::named(L"Other", changes.back().other);
    }
  }
  return changes;
}

} // namespace desktop
