#pragma once

#include "apps/qsol/Failure.h"
#include "apps/qsol/ListVerb.h"
#include "apps/qsol/ShowVerb.h"
#include "apps/qsol/StatsVerb.h"
#include "apps/qsol/Verbs.h"
#include "apps/qsol/VerifyVerb.h"
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "solutionmanager/store/SolutionFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

namespace io {
class CBlock;
}

/// A folder with a library that the file manager wrote, and the verbs of qsol with what they printed.
class QsolFixture : public testing::Test {
protected:
  using Key = SolutionVariationKey;
  using Json = nlohmann::json;

  struct Told {
    int code = -1;
    std::string out;
    std::vector<std::string> notes;
    Json Document() const { return Json::parse(out); }
    bool Notes(std::string const & part) const;
  };

  std::string File(char const * name = "amp.qsol") const { return (m_folder / name).string(); }
  std::string Twin() const { return File() + "_priv"; }

  /// A block of every kind: two variations of solution 5 of setup 3, "a=1" with values, header, definitions,
  /// convergence, profile.
  static void FillLibrary(SolutionFileManager & files);
  static void Save(SolutionFileManager & files, AString const & name, double value);
  static AString DataName(AString const & variation, long version = 12) { return Key(3, variation, 5, version).Pack(); }
  /// A library with all of that, committed and closed.
  void MakeLibrary();

  static LongFileName Path(std::string const & file) { return LongFileName(text::FromUtf8(file)); }

  /// A verb on the library unless the options name another.
  template <class Verb, class Options> Told Perform(Verb const & verb, Options options) const {
    if constexpr (requires { options.view.file; })
      options.view.file = options.view.file.empty() ? File() : options.view.file;
    else
      options.file = options.file.empty() ? File() : options.file;
    Told told;
    std::ostringstream out;
    try {
      told.code = verb(options, {out, [&](std::string const & note) { told.notes.push_back(note); }});
    } catch (qsol::Failure const & failure) {
      told.code = static_cast<int>(failure.Code());
      told.notes.push_back(failure.what());
    }
    told.out = out.str();
    return told;
  }
  Told List(qsol::ListOptions options = {}) const;
  Told Show(std::vector<std::string> names, qsol::ShowOptions options = {}) const;
  Told Stats(qsol::StatsOptions options = {}) const;
  Told Verify(qsol::VerifyOptions options = {}) const;
  /// The internal name that the library gave to a real one.
  std::string InternalName(AString const & realName) const;

  static std::string Bytes(std::string const & path);
  static void SetBytes(std::string const & path, std::string const & bytes);
  /// Flips one bit in the middle of what is found, which must be there.
  static void Spoil(std::string const & path, std::string const & what);

  support::TemporaryFolder m_folder;
};
