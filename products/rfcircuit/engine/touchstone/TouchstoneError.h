#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

namespace rf {

/** A Touchstone file that could not be read or written, or data that the format can't hold; what() is
    `FILE: what is wrong; remedy`. */
class TouchstoneError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/** The file system refused the file. */
class TouchstoneFileError : public TouchstoneError {
public:
  using TouchstoneError::TouchstoneError;
};

/** A text that isn't Touchstone, or says what this reader refuses: what() is
    `FILE:LINE:COLUMN: what is wrong; what was expected`, on one line.  Lines and columns count from one, a column is a
    byte of its line; where only the end of the file tells the fault, they are those of the end. */
class TouchstoneSyntaxError : public TouchstoneError {
public:
  TouchstoneSyntaxError(std::string const & file, std::size_t line, std::size_t column, std::string const & message,
                        std::string const & expected);

  std::string const & File() const { return m_File; }
  std::size_t Line() const { return m_Line; }
  std::size_t Column() const { return m_Column; }
  std::string const & Message() const { return m_Message; }
  std::string const & Expected() const { return m_Expected; }

private:
  std::string m_File;
  std::size_t m_Line;
  std::size_t m_Column;
  std::string m_Message;
  std::string m_Expected;
};

} // namespace rf
