#include "tests/desktop/support/FakeStores.h"

#include "basekit/file/FileOperations.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/model/BaseSimulationSetup.h"
#include "solutionmanager/model/BaseSolution.h"
#include "solutionmanager/model/BaseSolutionManager.h"

#include <fstream>
#include <sstream>

namespace support {

namespace {

constexpr double kNumbers[] = {1e9, 2.5e9};

void WriteFile(AString const & path, std::string const & content) {
  LFN_CreateDirectoryAndParents(LongFileName(path).DirPath());
  std::ofstream(text::ToUtf8(path), std::ios::binary) << content;
}

std::string ReadFile(AString const & path) {
  std::ifstream stream(text::ToUtf8(path), std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

} // namespace

FakeStores::FakeStores(BaseSolution & solution)
    : files(this, L"Files", L"F", L"Path", true), folders(this, L"Folders", L"D", L"Path", false),
      numbers(this, L"Numbers", L"N", L"Path", true), flags(this, L"Flags", L"G", L"Flag"), m_solution(solution) {}

VariationIDIndex FakeStores::KeyOf(AString const & variation) {
  return VariationIDIndex(variation, m_solution.GetVersionID(), GetVariationID(variation));
}

void FakeStores::Store(AString const & variation, std::string const & content) {
  VariationIDIndex const key = KeyOf(variation);
  WriteFile(files.GetFullPath(key, true, true), content);
  files.SetData(key);
  LFN_CreateDirectoryAndParents(LongFileName(GetRootDirectory(true) + FolderOf(L"D") + L"/"));
  WriteFile(folders.GetFullPath(key, true, true) + L"/inside", content);
  folders.SetData(key);
  for (double const number : kNumbers) {
    WriteFile(numbers.GetFullPath(key, number, true, true), content);
    numbers.SetData(key, number);
  }
  flags.SetData(key, content.size() % 2 == 0);
}

std::string FakeStores::ContentOf(AString const & variation) {
  VariationIDIndex const key = KeyOf(variation);
  std::vector<std::string> told;
  auto const look = [&](AString const & relative, AString const & inside) {
    told.push_back(relative.empty() ? std::string() : ReadFile(GetRootDirectory(false) + relative + inside));
  };
  look(files.GetRelativePath(key, false, false), AString());
  look(folders.GetRelativePath(key, false, false), L"/inside");
  for (double const number : kNumbers)
    look(numbers.GetRelativePath(key, number, false, false), AString());
  for (std::string const & one : told)
    if (one != told.front())
      return "a mixture of '" + one + "' and '" + told.front() + "'";
  if (flags.HaveData(key) != !told.front().empty() ||
      (!told.front().empty() && flags.GetData(key) != (told.front().size() % 2 == 0)))
    return "a flag that does not go with '" + told.front() + "'";
  return told.front();
}

long FakeStores::GetCurrentVersion(AString const &) { return m_solution.GetVersionID(); }

long FakeStores::GetNewID() { return m_solution.GetSolutionMgr()->ForEdit().FetchNextUniqueIDNoWrite(); }

AString FakeStores::GetRootDirectory(bool create) {
  AString const folder = m_solution.GetSolutionMgr()->GetProjectResultsDir() + L"fake/";
  if (create)
    LFN_CreateDirectoryAndParents(LongFileName(folder));
  return folder;
}

long FakeStores::GetVariationID(AString const & variation) {
  return m_solution.GetSolutionMgr()->GetVariationID(variation);
}

AString FakeStores::GetVariationFromID(long variationID) {
  return m_solution.GetSolutionMgr()->GetVariationFromID(variationID);
}

AString FakeStores::FolderOf(AString const & keyword) const {
  return keyword + AString::Format(L"%ld", m_solution.GetBaseSimulationSetup().GetID());
}

} // namespace support
