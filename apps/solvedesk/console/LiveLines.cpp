#include "apps/solvedesk/console/LiveLines.h"

#include "basekit/text/Utf8.h"

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace solvedesk {
namespace {

constexpr std::size_t kUsualWidth = 80;
constexpr std::size_t kLeastWidth = 20;

LiveLines * s_shown = nullptr;

std::size_t TerminalWidth() {
  winsize size{};
  if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
    return kUsualWidth;
  return size.ws_col < kLeastWidth ? kLeastWidth : size.ws_col;
}

} // namespace

std::string CutToWidth(std::string const & text, std::size_t width) {
  AString line;
  for (wchar_t const character : text::FromUtf8(text)) {
    bool const isControl = character < L' ' || (character >= 0x7F && character < 0xA0);
    line += isControl ? L' ' : character;
  }
  return text::ToUtf8(line.size() <= width ? line : line.substr(0, width - 1) + L"\u2026");
}

LiveLines::LiveLines() { s_shown = this; }

LiveLines::~LiveLines() {
  Clear();
  s_shown = nullptr;
}

void LiveLines::Show(std::vector<std::string> const & lines) {
  // A full last column would make some terminals begin a new line.
  std::size_t const width = TerminalWidth() - 1;
  std::string text = "\r";
  if (m_count > 1)
    text += "\033[" + std::to_string(m_count - 1) + "A";
  for (std::size_t i = 0; i < lines.size(); ++i)
    text += (i > 0 ? "\n" : "") + CutToWidth(lines[i], width) + "\033[K";
  text += "\033[J";
  std::fputs(text.c_str(), stderr);
  std::fflush(stderr);
  m_count = lines.size();
}

void LiveLines::Clear() {
  if (m_count == 0)
    return;
  std::string text = "\r";
  if (m_count > 1)
    text += "\033[" + std::to_string(m_count - 1) + "A";
  std::fputs((text + "\033[J").c_str(), stderr);
  std::fflush(stderr);
  m_count = 0;
}

void LiveLines::ClearShown() {
  if (s_shown)
    s_shown->Clear();
}

} // namespace solvedesk
