#include "basekit/text/AString.h"

#include "basekit/text/CaseFolding.h"
#include "basekit/text/NumberText.h"
#include "basekit/text/SmallMemory.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

std::size_t SizeOfBuffer(std::size_t head, std::size_t length) { return head + (length + 1) * sizeof(wchar_t); }

} // namespace

AString::Buffer * AString::MakeBuffer(std::size_t length) {
  void * memory = text::SmallMemory::Take(SizeOfBuffer(sizeof(Buffer), length));
  auto * buffer = new (memory) Buffer;
  buffer->length = static_cast<unsigned>(length);
  buffer->Text()[length] = L'\0';
  return buffer;
}

// The last user needs no locked step to know that it is the last.
void AString::Release(Buffer * buffer) noexcept {
  if (buffer->uses.load(std::memory_order_acquire) != 1 && buffer->uses.fetch_sub(1, std::memory_order_acq_rel) != 1)
    return;
  std::size_t const size = SizeOfBuffer(sizeof(Buffer), buffer->length);
  buffer->~Buffer();
  text::SmallMemory::Give(buffer, size);
}

AString::AString(wchar_t const * text) : AString(std::wstring_view(text ? text : L"")) {}

AString::AString(wchar_t const * text, std::size_t length) : AString(std::wstring_view(text, length)) {}

AString::AString(std::wstring_view text) {
  if (text.empty())
    return;
  m_buffer = MakeBuffer(text.size());
  std::copy(text.begin(), text.end(), m_buffer->Text());
}

AString operator+(AString const & a, AString const & b) {
  if (a.empty())
    return b;
  if (b.empty())
    return a;
  std::wstring joined;
  joined.reserve(a.size() + b.size());
  joined.append(a.View()).append(b.View());
  return AString(std::wstring_view(joined));
}

AString & AString::operator+=(AString const & tail) { return *this = *this + tail; }

AString & AString::operator+=(wchar_t tail) { return *this = *this + AString(&tail, 1); }

std::size_t AString::find(AString const & what, std::size_t from) const { return View().find(what.View(), from); }

std::size_t AString::find(wchar_t what, std::size_t from) const { return View().find(what, from); }

std::size_t AString::rfind(wchar_t what) const { return View().rfind(what); }

AString AString::substr(std::size_t from, std::size_t count) const {
  return from >= size() ? AString() : AString(View().substr(from, count));
}

bool AString::StartsWith(AString const & head) const { return View().starts_with(head.View()); }

bool AString::EndsWith(AString const & tail) const { return View().ends_with(tail.View()); }

AString AString::Trimmed() const {
  constexpr std::wstring_view blanks = L" \t\r\n\v\f";
  auto const first = View().find_first_not_of(blanks);
  if (first == npos)
    return AString();
  auto const last = View().find_last_not_of(blanks);
  return first == 0 && last + 1 == size() ? *this : AString(View().substr(first, last - first + 1));
}

AString AString::ToLower() const {
  std::wstring folded(View());
  std::transform(folded.begin(), folded.end(), folded.begin(), text::FoldCase);
  return AString(std::wstring_view(folded));
}

std::vector<AString> AString::Tokenize(AString const & separators) const {
  std::vector<AString> pieces;
  auto const all = View();
  for (auto from = all.find_first_not_of(separators.View()); from != npos;) {
    auto const to = std::min(all.find_first_of(separators.View(), from), all.size());
    pieces.emplace_back(all.substr(from, to - from));
    from = all.find_first_not_of(separators.View(), to);
  }
  return pieces;
}

bool AString::IsNumber(int base) const {
  auto digits = View();
  if (!digits.empty() && (digits.front() == L'-' || digits.front() == L'+'))
    digits.remove_prefix(1);
  return !digits.empty() && std::all_of(digits.begin(), digits.end(), [base](wchar_t c) {
    int const digit = c >= L'0' && c <= L'9'   ? c - L'0'
                      : c >= L'a' && c <= L'z' ? c - L'a' + 10
                      : c >= L'A' && c <= L'Z' ? c - L'A' + 10
                                               : 99;
    return digit < base;
  });
}

int AString::Compare(AString const & other) const noexcept {
  return m_buffer == other.m_buffer ? 0 : View().compare(other.View());
}

int AString::CompareNoCase(AString const & other) const noexcept {
  return m_buffer == other.m_buffer ? 0 : text::CompareNoCase(View(), other.View());
}

bool AString::MatchNoCase(AString const & a, AString const & b) noexcept {
  return a.size() == b.size() && a.CompareNoCase(b) == 0;
}

namespace {

/// One conversion of a format: flags and width as they stand, precision, and the conversion character.
struct Conversion {
  std::string flags;
  int precision = -1;
  wchar_t kind = 0;
};

Conversion ReadConversion(std::wstring_view format, std::size_t & at) {
  Conversion conversion;
  while (at < format.size() && std::wstring_view(L"-+ 0#").find(format[at]) != std::wstring_view::npos)
    conversion.flags += static_cast<char>(format[at++]);
  while (at < format.size() && format[at] >= L'0' && format[at] <= L'9')
    conversion.flags += static_cast<char>(format[at++]);
  if (at < format.size() && format[at] == L'.') {
    conversion.precision = 0;
    for (++at; at < format.size() && format[at] >= L'0' && format[at] <= L'9'; ++at)
      conversion.precision = std::min(conversion.precision * 10 + (format[at] - L'0'), 1000);
  }
  while (at < format.size() && (format[at] == L'l' || format[at] == L'h' || format[at] == L'z'))
    ++at;
  if (at < format.size())
    conversion.kind = format[at++];
  return conversion;
}

std::wstring Padded(std::wstring text, std::string const & flags) {
  auto const digits = flags.find_first_of("123456789");
  if (digits == std::string::npos)
    return text;
  auto const width =
      std::min<std::size_t>(static_cast<std::size_t>(std::strtoul(flags.c_str() + digits, nullptr, 10)), 10000);
  if (text.size() >= width)
    return text;
  bool const left = flags.find('-') < digits;
  bool const zeros = !left && flags.find('0') < digits;
  auto const at = left ? text.size() : zeros && text.front() == L'-' ? 1 : 0;
  return text.insert(at, width - text.size(), zeros ? L'0' : L' ');
}

} // namespace

AString AString::FormatList(AString const & format, FormatArgument const * arguments, std::size_t count) {
  std::wstring out;
  auto const all = format.View();
  std::size_t used = 0;
  for (std::size_t at = 0; at < all.size();) {
    if (all[at] != L'%') {
      out += all[at++];
      continue;
    }
    if (at + 1 < all.size() && all[at + 1] == L'%') {
      out += L'%';
      at += 2;
      continue;
    }
    ++at;
    Conversion const conversion = ReadConversion(all, at);
    if (used == count)
      continue;
    FormatArgument const & argument = arguments[used++];
    std::wstring piece;
    switch (argument.kind) {
    case FormatArgument::Kind::Text:
      piece = argument.text.substr(0, conversion.precision < 0 ? npos : static_cast<std::size_t>(conversion.precision));
      break;
    case FormatArgument::Kind::Signed:
    case FormatArgument::Kind::Unsigned:
      piece = text::IntegerText(argument.number, argument.kind == FormatArgument::Kind::Unsigned,
                                conversion.kind == L'x' ? 16 : 10);
      break;
    case FormatArgument::Kind::Real:
      piece = text::RealText(argument.real, static_cast<char>(conversion.kind), conversion.precision);
      break;
    case FormatArgument::Kind::None:
      break;
    }
    out += Padded(std::move(piece), conversion.flags);
  }
  return AString(std::wstring_view(out));
}
