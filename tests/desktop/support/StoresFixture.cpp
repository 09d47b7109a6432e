#include "tests/desktop/support/StoresFixture.h"

#include <algorithm>
#include <fstream>

namespace support {

void StoresTest::SolveWithFiles(desktop::Session & session, AString const & variation, std::string const & content) {
  session.BeginAutosave();
  ASSERT_EQ(Solve(session, variation, static_cast<double>(content.size())), 0);
  StoresOf(session).Store(variation, content);
  session.Autosave();
}

std::vector<std::string> StoresTest::Files() const {
  std::vector<std::string> files;
  for (std::string const & name : Names())
    if (name.find("results/fake/") != std::string::npos && std::filesystem::is_regular_file(m_folder / name))
      files.push_back(name);
  return files;
}

std::string StoresTest::Manage(desktop::Session & session, std::string const & content) {
  AString name;
  EXPECT_TRUE(session.GetManager().CreateManagedFile(name, L"notes", L"txt"));
  AString const path = session.GetManager().GetFullPathForManagedFile(L"notes", name).FilePath();
  std::ofstream(text::ToUtf8(path), std::ios::binary) << content;
  return text::ToUtf8(name);
}

std::vector<std::string> StoresTest::ManagedContents() const {
  std::vector<std::string> contents;
  for (std::string const & name : Names())
    if (name.find("results/mf_") != std::string::npos && std::filesystem::is_regular_file(m_folder / name))
      contents.push_back(Read(name));
  std::sort(contents.begin(), contents.end());
  return contents;
}

} // namespace support
