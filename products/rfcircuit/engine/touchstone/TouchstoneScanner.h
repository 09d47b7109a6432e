#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace rf {

class IByteSource;

/** A line and the byte in it, both from one. */
struct TouchstonePlace {
  std::size_t line = 1;
  std::size_t column = 1;
};

/** Words, numbers and line ends of a Touchstone text, which goes through a buffer of at most 256 KiB.  Blanks and
   comments are passed over, comments are gathered.  A line ends with LF, CR LF or CR.  Keeps the name and the source it
   is made of; what is no Touchstone throws TouchstoneSyntaxError. */
class TouchstoneScanner {
public:
  static constexpr char END_OF_LINE = '\n';
  static constexpr char END_OF_TEXT = '\0';
  static constexpr std::size_t LONGEST_WORD = 256;

  TouchstoneScanner(IByteSource & source, std::string const & name);

  /** Passes blanks and comments; the first character of the word that stands there, or one of the two ends. */
  char Next();
  /** Passes the line end that Next told of. */
  void PassLineEnd();

  /** The number that Next told of, times ten to the power of `shift`, rounded once.  Always finite. */
  double Number(int shift = 0);
  /** The rest of the line up to a blank or comment; valid until the next call. */
  std::string_view Word();
  /** `[Any Words]`: what stands between, in small letters with single blanks. */
  std::string Keyword();
  bool IsAtEnd() {
    Prepare();
    return m_At == m_End;
  }
  /** The whole of a line, whatever it holds, and passes its end; cut off after 1024 bytes. */
  std::string Line();

  TouchstonePlace Place() const { return {m_Line, Column(m_At)}; }
  std::uint64_t BytesRead() const { return m_Passed + static_cast<std::uint64_t>(m_At - m_Buffer.data()); }
  std::vector<std::string> const & Comments() const { return m_Comments; }
  std::size_t CommentsLeftOut() const { return m_CommentsLeftOut; }

  [[noreturn]] void Fail(std::string const & message, std::string const & expected) const;
  [[noreturn]] void Fail(TouchstonePlace const & place, std::string const & message,
                         std::string const & expected) const;

private:
  void Fill();
  /** Makes sure that a whole word stands in the buffer. */
  void Prepare() {
    if (m_End - m_At < static_cast<std::ptrdiff_t>(2 * LONGEST_WORD) && !m_IsLastPiece)
      Fill();
  }
  std::size_t Column(char const * at) const {
    return static_cast<std::size_t>(m_Passed + static_cast<std::uint64_t>(at - m_Buffer.data()) - m_LineStart) + 1;
  }
  void PassByteOrderMark();
  void PassComment();
  /** Passes all up to the line end, the first `most` bytes of which are kept. */
  std::string RestOfLine(std::size_t most);
  double UnusualNumber(int shift);

  IByteSource & m_Source;
  std::string const & m_Name;
  std::vector<char> m_Buffer;
  char const * m_At = nullptr;
  char const * m_End = nullptr; ///< a zero stands there
  bool m_IsLastPiece = false;
  std::uint64_t m_Passed = 0; ///< bytes of the text before the buffer
  std::size_t m_Line = 1;
  std::uint64_t m_LineStart = 0;
  std::vector<std::string> m_Comments;
  std::size_t m_CommentRoom;
  std::size_t m_CommentsLeftOut = 0;
};

} // namespace rf
