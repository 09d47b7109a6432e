#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string_view>

namespace rf {

/** Bytes of a text, piece by piece. */
class IByteSource {
public:
  virtual ~IByteSource() = default;

  /** Fills at most `size` bytes and tells how many; none at the end. */
  virtual std::size_t Read(char * bytes, std::size_t size) = 0;
  /** Of all that there is, before the first call of Read; zero where that isn't known. */
  virtual std::uint64_t Size() const = 0;
};

/** Of a file; TouchstoneFileError where it can't be opened or read. */
class FileBytes : public IByteSource {
public:
  explicit FileBytes(std::filesystem::path const & path);
  ~FileBytes() override;
  FileBytes(FileBytes const &) = delete;
  FileBytes & operator=(FileBytes const &) = delete;

  std::size_t Read(char * bytes, std::size_t size) override;
  std::uint64_t Size() const override;

private:
  [[noreturn]] void Refuse(int error) const;

  std::filesystem::path m_Path;
  std::FILE * m_File = nullptr;
};

/** Of a text that outlives this. */
class TextBytes : public IByteSource {
public:
  explicit TextBytes(std::string_view text) : m_Rest(text) {}

  std::size_t Read(char * bytes, std::size_t size) override;
  std::uint64_t Size() const override { return m_Rest.size(); }

private:
  std::string_view m_Rest;
};

} // namespace rf
