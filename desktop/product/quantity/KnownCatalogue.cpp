// A catalogue in a block:
//
//     ReportType {                       one for each, in order
//       Number = 1
//       Name = "Network parameters"
//       Axis = "Freq"
//       Intrinsic = "F"
//       State(10, 3, 1, 2)
//       AxisValues(1e9, 2e9)
//       DisplayTypes(1, 2)
//       ContextLabel = ""
//       Contexts []
//     }
//     Quantity {                         what was asked for, and is one
//       Text = "S(2,1)"
//       Category = "S parameters"
//       State(0, 0, 1, 3)
//       ReportType = 1
//     }
//     NoQuantities ["c1"]                what was asked for, and is none
#include "desktop/product/quantity/KnownCatalogue.h"

#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"

namespace desktop {

namespace {

/// Those of some reports; more are asked once more.
constexpr std::size_t kMostAnswers = 1000;

wchar_t const * const kReportType = L"ReportType";
wchar_t const * const kNumber = L"Number";
wchar_t const * const kName = L"Name";
wchar_t const * const kAxis = L"Axis";
wchar_t const * const kIntrinsic = L"Intrinsic";
wchar_t const * const kState = L"State";
wchar_t const * const kAxisValues = L"AxisValues";
wchar_t const * const kDisplayTypes = L"DisplayTypes";
wchar_t const * const kContextLabel = L"ContextLabel";
wchar_t const * const kContexts = L"Contexts";
wchar_t const * const kQuantity = L"Quantity";
wchar_t const * const kText = L"Text";
wchar_t const * const kCategory = L"Category";
wchar_t const * const kNoQuantities = L"NoQuantities";

using Kind = io::CBlock_item::Kind;

void WriteState(io::CBlock & block, ValueState const & state) {
  io::CBlock_func func{AString(kState)};
  func << static_cast<int>(state.fullUnit) << static_cast<int>(state.unitType) << state.thirdWord
       << static_cast<int>(state.parameterType);
  block << func;
}

bool ReadState(io::CBlock const & block, ValueState & state) {
  auto const * const func = static_cast<io::CBlock_func const *>(block.FindItem(kState, Kind::Func));
  int words[4] = {};
  if (!func)
    return false;
  auto place = func->begin();
  for (int & word : words)
    if (!func->QueryUnamedValues(place, word))
      return false;
  state = ValueState(static_cast<Units::FullUnitType>(words[0]), static_cast<Units::UnitType>(words[1]), words[2],
                     static_cast<val::ParameterType>(words[3]));
  return true;
}

void WriteTexts(io::CBlock & block, wchar_t const * name, std::vector<AString> const & texts) {
  io::CBlock_vec vec{AString(name)};
  vec.AppendValues(texts);
  block << vec;
}

bool ReadTexts(io::CBlock const & block, wchar_t const * name, std::vector<AString> & texts) {
  auto const * const vec = static_cast<io::CBlock_vec const *>(block.FindItem(name, Kind::Vec));
  return vec && vec->QueryValues(texts);
}

template <class T> bool ReadNamed(io::CBlock const & block, wchar_t const * name, T & value) {
  block >> io::named(name, value);
  return block.Found();
}

bool ReadNumber(io::CBlock const & block, wchar_t const * name, unsigned & value) {
  long number = 0;
  bool const isRead = ReadNamed(block, name, number) && number >= 0;
  value = static_cast<unsigned>(number);
  return isRead;
}

void WriteType(io::CBlock & block, QuantityReportType const & type) {
  io::CBlock child{AString(kReportType)};
  child << io::named(kNumber, static_cast<long>(type.number)) << io::named(kName, type.name)
        << io::named(kAxis, type.axis) << io::named(kIntrinsic, type.intrinsic);
  WriteState(child, type.axisState);
  io::CBlock_func values{AString(kAxisValues)};
  values.AppendReals(type.axisValues);
  io::CBlock_func displays{AString(kDisplayTypes)};
  for (rep::DisplayType const display : type.displayTypes)
    displays << static_cast<int>(display);
  child << values << displays << io::named(kContextLabel, type.contextLabel);
  WriteTexts(child, kContexts, type.contexts);
  block << child;
}

bool ReadType(io::CBlock const & block, QuantityReportType & type) {
  auto const * const values = static_cast<io::CBlock_func const *>(block.FindItem(kAxisValues, Kind::Func));
  auto const * const displays = static_cast<io::CBlock_func const *>(block.FindItem(kDisplayTypes, Kind::Func));
  if (!values || !displays)
    return false;
  auto place = values->begin();
  values->QueryUnamedValues(place, type.axisValues);
  bool const areAllNumbers = place == values->end();
  place = displays->begin();
  for (int display = 0; displays->QueryUnamedValues(place, display);)
    type.displayTypes.push_back(static_cast<rep::DisplayType>(display));
  return areAllNumbers && ReadNumber(block, kNumber, type.number) && ReadNamed(block, kName, type.name) &&
         ReadNamed(block, kAxis, type.axis) && ReadNamed(block, kIntrinsic, type.intrinsic) &&
         ReadState(block, type.axisState) && ReadNamed(block, kContextLabel, type.contextLabel) &&
         ReadTexts(block, kContexts, type.contexts);
}

bool ReadQuantity(io::CBlock const & block, AString & text, QuantityInfo & info) {
  return ReadNamed(block, kText, text) && ReadNamed(block, kCategory, info.category) && ReadState(block, info.state) &&
         ReadNumber(block, kReportType, info.reportType);
}

} // namespace

std::unique_ptr<KnownCatalogue> KnownCatalogue::Read(io::CBlock const & block,
                                                     std::function<std::unique_ptr<IQuantityCatalogue>()> make) {
  std::unique_ptr<KnownCatalogue> known(new KnownCatalogue);
  known->m_types.emplace();
  for (auto const & child : block) {
    if (!child->IsBlock())
      continue;
    auto const & item = static_cast<io::CBlock const &>(*child);
    QuantityReportType type;
    QuantityInfo info;
    AString text;
    if (AString::MatchNoCase(item.Name(), kReportType) && ReadType(item, type))
      known->m_types->push_back(std::move(type));
    else if (AString::MatchNoCase(item.Name(), kQuantity) && ReadQuantity(item, text, info))
      known->m_told.try_emplace(text, info);
    else
      return nullptr;
  }
  std::vector<AString> none;
  if (known->m_types->empty() || !ReadTexts(block, kNoQuantities, none))
    return nullptr;
  for (AString const & text : none)
    known->m_told.try_emplace(text, std::nullopt);
  known->m_make = std::move(make);
  return known;
}

void KnownCatalogue::WriteQuantities(io::CBlock & block, Answers const & answers, std::vector<AString> & none) {
  for (auto const & [text, info] : answers) {
    if (!info) {
      none.push_back(text);
      continue;
    }
    io::CBlock child{AString(kQuantity)};
    child << io::named(kText, text) << io::named(kCategory, info->category);
    WriteState(child, info->state);
    child << io::named(kReportType, static_cast<long>(info->reportType));
    block << child;
  }
}

void KnownCatalogue::Write(io::CBlock & block) const {
  for (QuantityReportType const & type : GetReportTypes())
    WriteType(block, type);
  std::vector<AString> none;
  WriteQuantities(block, m_told, none);
  WriteQuantities(block, m_answers, none);
  WriteTexts(block, kNoQuantities, none);
}

bool KnownCatalogue::ForgetMade() {
  if (!m_types)
    return false;
  m_made.reset();
  m_answers.clear();
  return true;
}

IQuantityCatalogue const & KnownCatalogue::Made() const {
  if (!m_made)
    m_made = m_make();
  return *m_made;
}

std::vector<QuantityReportType> const & KnownCatalogue::GetReportTypes() const {
  return m_types ? *m_types : Made().GetReportTypes();
}

bool KnownCatalogue::Describe(AString const & text, QuantityInfo & info) const {
  for (Answers const * const answers : {&m_told, static_cast<Answers const *>(&m_answers)})
    if (auto const known = answers->find(text); known != answers->end()) {
      if (known->second)
        info = *known->second;
      return known->second.has_value();
    }
  bool const isQuantity = Made().Describe(text, info);
  if (m_told.size() + m_answers.size() < kMostAnswers)
    m_answers.emplace(text, isQuantity ? std::optional(info) : std::nullopt);
  return isQuantity;
}

} // namespace desktop
