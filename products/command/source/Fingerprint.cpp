// What tells solver files apart that solve something else.

#include "products/command/source/SolverFile.h"
#include "products/command/source/SourceError.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace command {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;

/// FNV-1a with 64 bits; each text counts with its length, so that no two lists of texts run together.
class Hash {
public:
  void AddBytes(std::string_view bytes) {
    for (char const c : bytes) {
      m_hash ^= static_cast<unsigned char>(c);
      m_hash *= 0x100000001b3ULL;
    }
  }
  void Add(std::string_view text) {
    AddBytes(std::to_string(text.size()) + ":");
    AddBytes(text);
  }
  void AddNumber(long long number) { Add(std::to_string(number)); }
  std::string Text() const {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(m_hash));
    return text;
  }

private:
  std::uint64_t m_hash = 0xcbf29ce484222325ULL;
};

// Not read into memory as a whole: data that is copied may be large.
void AddFile(InputFile const & input, Hash & hash) {
  std::ifstream file(input.path, std::ios::binary);
  std::string piece(kPiece, '\0');
  std::size_t size = 0;
  while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || file.gcount() > 0) {
    size += static_cast<std::size_t>(file.gcount());
    hash.AddBytes(std::string_view(piece).substr(0, static_cast<std::size_t>(file.gcount())));
  }
  if (!file.eof())
    throw SourceError(input.path, 0, "can't be read; get permission, or correct the name");
  hash.AddNumber(static_cast<long long>(size));
}

} // namespace

std::string FingerprintOf(SolverFile const & file) {
  Hash hash;
  for (DesignVariable const & variable : file.variables) {
    hash.Add(variable.name);
    hash.Add(variable.unit);
  }
  for (auto const & [name, text] : file.settings) {
    hash.Add(name);
    hash.Add(text);
  }
  for (InputFile const & input : file.inputs) {
    hash.Add(input.name);
    hash.AddNumber(input.hasHoles);
    if (input.hasHoles)
      hash.Add(input.content.Text());
    else
      AddFile(input, hash);
  }
  hash.AddNumber(file.usesShell);
  hash.AddNumber(static_cast<long long>(file.words.size()));
  for (Template const & word : file.words)
    hash.Add(word.Text());
  hash.Add(file.standardInput);
  for (int const code : file.successCodes)
    hash.AddNumber(code);
  for (OutputLine const & output : file.outputs) {
    hash.Add(output.file);
    hash.AddNumber(static_cast<int>(output.form));
    hash.AddNumber(output.hasHeader);
    for (QuantityLine const & quantity : output.quantities) {
      for (std::string const & text : {quantity.name, quantity.where, quantity.over, quantity.unit})
        hash.Add(text);
      hash.AddNumber(static_cast<int>(quantity.kind));
    }
  }
  return hash.Text();
}

std::string ReadWholeFile(std::string const & path, std::string const & askedFile, int askedLine) {
  std::error_code ignored; // then the file can't be opened either
  std::ifstream file(path, std::ios::binary);
  int problem = std::filesystem::is_directory(path, ignored) ? EISDIR : file ? 0 : errno;
  std::string content;
  if (problem == 0) {
    content.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    problem = file.bad() ? EIO : 0;
  }
  if (problem != 0)
    throw SourceError((askedFile.empty() ? std::string() : askedFile + ":" + std::to_string(askedLine) + ": ") + path +
                      ": can't be read (" + std::strerror(problem) + "); put the file there, readable for you");
  return content;
}

} // namespace command
