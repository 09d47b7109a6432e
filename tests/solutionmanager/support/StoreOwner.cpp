#include "tests/solutionmanager/support/StoreOwner.h"

#include "basekit/text/Utf8.h"

#include <cstdio>
#include <fstream>
#include <iterator>

namespace support {

StoreOwner::StoreOwner() { std::filesystem::create_directory(m_folder / "res"); }

AString StoreOwner::GetRootDirectory(bool create) {
  rootAsked.push_back(create);
  return text::FromUtf8(m_folder.Path().string()) + AString(L"/");
}

long StoreOwner::GetVariationID(AString const & variation) {
  return m_variations.try_emplace(variation, static_cast<long>(m_variations.size()) + 1).first->second;
}

AString StoreOwner::GetVariationFromID(long variationID) {
  for (auto const & [text, id] : m_variations)
    if (id == variationID)
      return text;
  return AString();
}

void StoreOwner::Told(char const * what, AString const & variation, long original, long mirrored,
                      std::string const & more) {
  m_calls.push_back(std::string(what) + ' ' + text::ToUtf8(variation) + ' ' + std::to_string(original) + ' ' +
                    std::to_string(mirrored) + more);
}

namespace {

std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, " %g", value);
  return text;
}

} // namespace

void StoreOwner::OnCommitDoubleLocation(AString const & variation, long original, long mirrored, double value,
                                        AString const &, AString & location) {
  Told("commit", variation, original, mirrored, Number(value));
  if (!commitAs.empty())
    location = commitAs;
}
void StoreOwner::OnCommitLocation(AString const & variation, long original, long mirrored, AString const &,
                                  AString & location) {
  Told("commit", variation, original, mirrored, "");
  if (!commitAs.empty())
    location = commitAs;
}
void StoreOwner::OnDeleteDoubleLocation(AString const & variation, long original, long mirrored, double value,
                                        AString const &) {
  Told("delete", variation, original, mirrored, Number(value));
}
void StoreOwner::OnDeleteLocation(AString const & variation, long original, long mirrored, AString const &) {
  Told("delete", variation, original, mirrored, "");
}
void StoreOwner::OnMoveDoubleLocation(AString const & variation, long original, long mirrored, double value,
                                      AString const &) {
  Told("move", variation, original, mirrored, Number(value));
}
void StoreOwner::OnMoveLocation(AString const & variation, long original, long mirrored, AString const &) {
  Told("move", variation, original, mirrored, "");
}

void StoreOwner::GetSingleVariationToWrite(bool & onlyOne, long & variationID, AString & variation) {
  if (!isOnlyOne)
    return;
  onlyOne = true;
  variation = onlyVariation;
  variationID = GetVariationID(onlyVariation);
}

void StoreOwner::GetWriteMode(bool & snapshot, bool & keepsWorking) {
  if (!setsWriteMode)
    return;
  snapshot = isSnapshot;
  keepsWorking = keepsWorkingLocations;
}

std::vector<std::string> StoreOwner::TakeCalls() { return std::exchange(m_calls, {}); }

std::filesystem::path StoreOwner::PathOf(AString const & location) const { return m_folder / text::ToUtf8(location); }

void StoreOwner::Put(AString const & location, std::string const & content) {
  std::ofstream(PathOf(location)) << content;
}

std::string StoreOwner::Content(AString const & location) const {
  auto const path = PathOf(location);
  if (!std::filesystem::exists(path))
    return "-";
  std::ifstream in(path);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

void StoreOwner::MakeFolder(AString const & location) { std::filesystem::create_directories(PathOf(location)); }

std::set<AString> StoreOwner::AllFiles() const {
  std::set<AString> files;
  for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
    if (entry.is_regular_file())
      files.insert(text::FromUtf8(std::filesystem::relative(entry.path(), m_folder.Path()).string()));
  return files;
}

} // namespace support
