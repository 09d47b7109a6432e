#include "apps/qsol/Catalogue.h"

#include "apps/qsol/Text.h"
#include "basekit/io/CBlock.h"
#include "basekit/io/RecordFormat.h"
#include "basekit/value/VariableValues.h"
#include "solutionmanager/store/SolutionFileManager.h"

#include <fmt/format.h>

#include <algorithm>

namespace qsol {

using library::LibraryReader;

namespace {

constexpr wchar_t const * kHeaderName = L"FileHeader";
constexpr std::wstring_view kGeneratedName = L"SolutionBlock";

Kind KindOf(SolutionVariationKey const & key) {
  if (key.IsSimSetupDefinitionKey() || key.IsSolutionDefinitionKey())
    return Kind::Definition;
  if (key.GetSolutionKey() == SolutionVariationKey::kConvDataKey)
    return Kind::Convergence;
  return key.GetSolutionKey() == SolutionVariationKey::kProfileDataKey ? Kind::Profile : Kind::Data;
}

void TakeRealName(Block & block, AString const & realName) {
  SolutionVariationKey key;
  if (realName.CompareNoCase(kHeaderName) == 0) {
    block.kind = Kind::Header;
  } else if (key.Unpack(realName)) {
    block.kind = KindOf(key);
    block.key = key;
  }
}

bool IsGeneratedName(AString const & name) {
  std::wstring_view digits = name.View();
  if (!digits.starts_with(kGeneratedName))
    return false;
  digits.remove_prefix(kGeneratedName.size());
  return !digits.empty() && digits.find_first_not_of(L"0123456789") == digits.npos;
}

} // namespace

char const * NameOf(Kind kind) {
  switch (kind) {
  case Kind::Data:
    return "data";
  case Kind::Definition:
    return "definition";
  case Kind::Convergence:
    return "convergence";
  case Kind::Profile:
    return "profile";
  case Kind::Header:
    return "header";
  case Kind::Map:
    return "map";
  case Kind::Other:
    return "other";
  }
  return "other";
}

std::string Block::Address() const {
  return key ? fmt::format("setup={} solution={} version={}", key->GetSimSetupKey(), key->GetSolutionKey(),
                           key->GetVersionIDKey())
             : std::string();
}

AString Block::Variation() const { return key && kind != Kind::Definition ? key->GetDesignVariationKey() : AString(); }

std::string Block::Description() const {
  std::string text = OneLine(entry.name) + " (" + NameOf(kind);
  for (std::string const & part : {Address(), OneLine(Variation())})
    text += part.empty() ? "" : " " + part;
  return text + ")";
}

std::uint64_t Block::RecordSize() const { return io::kRecordHeaderSize + Utf8(entry.name).size() + entry.length + 2; }

bool Selection::Fits(Block const & block) const {
  if (kind && *kind != block.kind)
    return false;
  if (!setup && !solution && !variation)
    return true;
  if (!block.key || (setup && *setup != block.key->GetSimSetupKey()) ||
      (solution && *solution != block.key->GetSolutionKey()))
    return false;
  return !variation || (block.kind != Kind::Definition &&
                        VariableValues::AreVariationKeysEqual(*variation, block.key->GetDesignVariationKey()));
}

Catalogue::Catalogue(LibraryReader & reader) {
  for (auto & entry : reader.List()) {
    m_places.emplace(entry.name, m_blocks.size());
    m_blocks.push_back({std::move(entry), AString(), {}, Kind::Other});
  }
  ReadMap(reader);
  // What the map doesn't know stands under its own name, which may be a real one.
  for (Block & block : m_blocks)
    if (block.realName.empty() && block.kind == Kind::Other)
      TakeRealName(block, block.entry.name);
}

void Catalogue::ReadMap(LibraryReader & reader) {
  auto const place = m_places.find(SolutionFileManager::kRealToInternalBlkName);
  if (place == m_places.end())
    return;
  m_blocks[place->second].kind = Kind::Map;
  io::CBlock map(SolutionFileManager::kRealToInternalBlkName);
  if (reader.Load(map) != CStreamioLibrary::kLibSuccess) {
    m_mapError = reader.LastError();
    return;
  }
  m_hasMap = true;
  for (auto const & child : map) {
    io::CBlock_ptr<io::CBlock_named_value> const pair(child);
    AString internalName;
    if (pair && pair->Query(internalName))
      AddEntry(pair->Name(), internalName);
  }
}

void Catalogue::AddEntry(AString const & realName, AString const & internalName) {
  auto const place = m_places.find(internalName);
  if (place == m_places.end()) {
    m_dangling.push_back({realName, internalName});
    return;
  }
  Block & block = m_blocks[place->second];
  if (!block.realName.empty() || block.kind == Kind::Map) {
    m_shared.push_back({realName, internalName});
    return;
  }
  block.realName = realName;
  TakeRealName(block, realName);
}

Block const * Catalogue::Find(AString const & name) const {
  if (name.empty())
    return nullptr; // Blocks outside the map have no real name.
  if (auto const place = m_places.find(name); place != m_places.end())
    return &m_blocks[place->second];
  auto const named = std::ranges::find(m_blocks, name, &Block::realName);
  if (named != m_blocks.end())
    return &*named;
  SolutionVariationKey key;
  if (!key.Unpack(name))
    return nullptr;
  auto const keyed =
      std::ranges::find_if(m_blocks, [&](Block const & block) { return block.key && *block.key == key; });
  return keyed == m_blocks.end() ? nullptr : &*keyed;
}

std::vector<Block const *> Catalogue::Unmapped() const {
  std::vector<Block const *> blocks;
  for (Block const & block : m_blocks)
    if (block.realName.empty() && IsGeneratedName(block.entry.name))
      blocks.push_back(&block);
  return blocks;
}

} // namespace qsol
