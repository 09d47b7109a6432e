#pragma once

#include "products/command/source/Template.h"

#include <cstddef>
#include <string>
#include <vector>

namespace command {

/// A design variable: a plain number, in the unit that the program takes it in.
struct DesignVariable {
  std::string name;
  double value = 0.0;
  std::string unit; ///< for people
  int line = 0;
};

/// A setup, with texts for settings where they differ from the defaults.
struct SetupLine {
  std::string name;
  HoleValues settings;
  int line = 0;
};

/// A file that is put into the scratch folder: a template with its holes filled, or a plain copy.
struct InputFile {
  std::string path; ///< where it is
  std::string name; ///< in the scratch folder
  bool hasHoles = false;
  Template content; ///< of one with holes
  int line = 0;
};

/// A number or a column of numbers of an output.
struct QuantityLine {
  enum class Kind {
    kColumn,
    kOnly,  ///< the one value that is there
    kFirst, ///< of a column
    kLast
  };
  std::string name;
  Kind kind = Kind::kColumn;
  std::string where; ///< a column's name or number, a JSON pointer
  std::string over;  ///< the column that this one runs over; empty without
  std::string unit;
  int line = 0;
};

/// Something that the program leaves: a file, or what it printed.
struct OutputLine {
  enum class Form {
    kCsv,
    kTable, ///< parted by blanks
    kJson
  };
  Form form = Form::kCsv;
  std::string file; ///< empty: standard output
  bool hasHeader = true;
  std::vector<QuantityLine> quantities;
  int line = 0;

  std::string Name() const { return file.empty() ? "standard output" : file; }
};

/// A program as a solver: what a solver file says.  docs/command.md tells how it is written.
struct SolverFile {
  std::string path;
  std::vector<DesignVariable> variables;
  HoleValues settings; ///< with their defaults
  std::vector<SetupLine> setups;
  std::vector<InputFile> inputs;
  std::vector<Template> words; ///< the program and its arguments; with a shell its one line
  bool usesShell = false;
  int commandLine = 0;
  std::string standardInput; ///< one of the inputs; empty: nothing to read
  std::vector<OutputLine> outputs;
  std::vector<int> successCodes{0};
  double timeLimit = 3600.0;      ///< seconds
  double outputLimit = 256.0e6;   ///< bytes of a file, or of what is printed
  std::vector<std::string> notes; ///< what may surprise the writer, one line each
};

/// Throws SourceError.
SolverFile ReadSolverFile(std::string const & path);

/// Equal for solver files that solve the same: variables' names, settings, templates, copied files, command and outputs
/// count; values of variables, setups, limits and remarks don't.  Throws SourceError for a file that can't be read.
std::string FingerprintOf(SolverFile const & file);

/// The given settings in the file's order and spelling, or a one-line problem that names one which the file does not
/// know, and those that it knows.
std::string FitSettings(SolverFile const & file, HoleValues const & given, HoleValues & fitted);

/// The whole content; throws SourceError that names the file, and the place that asks for it.
std::string ReadWholeFile(std::string const & path, std::string const & askedFile = {}, int askedLine = 0);

} // namespace command
