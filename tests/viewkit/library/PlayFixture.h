#pragma once

#include "basekit/file/FileOperations.h"
#include "tests/support/LibraryPlay.h"
#include "tests/viewkit/library/LibraryFixture.h"

/// Random operations on a library against a simple model.
class LibraryPlays : public LibraryFixture {
protected:
  using LibraryContent = support::LibraryContent;
  using LibraryPlay = support::LibraryPlay;
  using Kind = LibraryPlay::Step::Kind;

  void Expect(LibraryContent const & wanted, Library & library) {
    std::string complaint;
    auto const content = LibraryPlay::ContentOf(library, complaint);
    ASSERT_TRUE(content) << complaint;
    ASSERT_EQ(*content, wanted) << "there is    " << LibraryPlay::TextOf(*content) << "\nthe model is "
                                << LibraryPlay::TextOf(wanted);
  }
  void RemoveFiles(AString const & path) {
    for (auto const & each : {path, PrivateOf(path)})
      if (LFN_Exists(each))
        LFN_DeleteFile(each);
  }
};
