#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <system_error>
#include <utility>

namespace rf {
namespace {

[[noreturn]] void Refuse(std::filesystem::path const & path, std::string const & message, std::string const & remedy) {
  throw TouchstoneError(path.string() + ": " + message + "; " + remedy);
}

void CheckExtension(std::filesystem::path const & path, std::size_t ports) {
  std::string extension = path.extension().string();
  for (char & c : extension)
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  std::size_t const size = extension.size();
  bool const tellsPorts = size > 3 && extension[1] == 's' && extension.back() == 'p' &&
                          extension.find_first_not_of("0123456789", 2) == size - 1;
  if (tellsPorts && extension != TouchstoneExtension(ports))
    Refuse(path, fmt::format("the name promises other than {} ports", ports),
           "end it with " + TouchstoneExtension(ports));
}

/** A new file beside the target; removed again unless it took the target's place. */
class FileBeside {
public:
  explicit FileBeside(std::filesystem::path const & target) : m_Target(target), m_Path(target) {
    m_Path += fmt::format(".{}.tmp", std::random_device()());
    errno = 0;
    m_File = std::fopen(m_Path.string().c_str(), "wbx");
    if (!m_File)
      RefuseWith(errno, "check that its folder exists and may be written");
  }
  ~FileBeside() {
    if (m_File)
      std::fclose(m_File);
    std::error_code ignored;
    if (!m_Renamed)
      std::filesystem::remove(m_Path, ignored);
  }
  FileBeside(FileBeside const &) = delete;
  FileBeside & operator=(FileBeside const &) = delete;

  void Write(std::string const & text) {
    errno = 0;
    if (std::fwrite(text.data(), 1, text.size(), m_File) != text.size() || std::fflush(m_File) != 0)
      RefuseWith(errno, "make room on the disk");
    std::FILE * const file = std::exchange(m_File, nullptr);
    if (std::fclose(file) != 0)
      RefuseWith(errno, "make room on the disk");
  }

  void TakePlace() {
    std::error_code code;
    std::filesystem::rename(m_Path, m_Target, code);
    if (code)
      RefuseWith(code.value(), "is a folder of that name in the way?");
    m_Renamed = true;
  }

private:
  [[noreturn]] void RefuseWith(int error, std::string const & remedy) const {
    throw TouchstoneFileError(m_Target.string() + ": can't be written: " + std::strerror(error) + "; " + remedy);
  }

  std::filesystem::path m_Target;
  std::filesystem::path m_Path;
  std::FILE * m_File = nullptr;
  bool m_Renamed = false;
};

} // namespace

void WriteTouchstone(std::filesystem::path const & path, std::vector<std::string> const & header,
                     std::vector<Port> const & ports, std::vector<double> const & frequencies,
                     std::vector<SMatrix> const & matrices, TouchstoneOptions const & options) {
  std::string const text = TouchstoneText(path.string(), header, ports, frequencies, matrices, options);
  CheckExtension(path, ports.size());
  WriteTouchstoneText(path, text);
}

void WriteTouchstoneText(std::filesystem::path const & path, std::string const & text) {
  FileBeside file(path);
  file.Write(text);
  file.TakePlace();
}

} // namespace rf
