#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

/// A wide literal: ACHAR("text").
#define ACHAR(literal) ACHAR_WIDEN(literal)
#define ACHAR_WIDEN(literal) L##literal

/// Wide text with value semantics.  Copies share one immutable, reference-counted buffer, so that the
/// hundreds of thousands of long keys of a solution library cost one pointer a copy.  Changing operations
/// make a new buffer.  Comparison without case folds character by character, independent of any locale.
class AString {
  struct Buffer {
    std::atomic<unsigned> uses{1};
    unsigned length = 0;

    wchar_t * Text() { return reinterpret_cast<wchar_t *>(this + 1); }
  };

public:
  static constexpr std::size_t npos = std::wstring_view::npos;

  AString() = default;
  AString(wchar_t const * text);
  AString(wchar_t const * text, std::size_t length);
  AString(std::wstring_view text);
  AString(std::wstring const & text) : AString(std::wstring_view(text)) {}
  AString(AString const & other) noexcept : m_buffer(other.m_buffer) {
    if (m_buffer)
      m_buffer->uses.fetch_add(1, std::memory_order_relaxed);
  }
  AString(AString && other) noexcept : m_buffer(other.m_buffer) { other.m_buffer = nullptr; }
  AString & operator=(AString const & other) noexcept { return *this = AString(other); }
  AString & operator=(AString && other) noexcept {
    std::swap(m_buffer, other.m_buffer);
    return *this;
  }
  ~AString() {
    if (m_buffer)
      Release(m_buffer);
  }

  std::size_t size() const noexcept { return m_buffer ? m_buffer->length : 0; }
  bool empty() const noexcept { return size() == 0; }
  wchar_t const * c_str() const noexcept { return m_buffer ? m_buffer->Text() : L""; }
  std::wstring_view View() const noexcept { return {c_str(), size()}; }
  wchar_t operator[](std::size_t index) const { return c_str()[index]; }
  wchar_t const * begin() const noexcept { return c_str(); }
  wchar_t const * end() const noexcept { return c_str() + size(); }

  AString & operator+=(AString const & tail);
  AString & operator+=(wchar_t tail);
  void clear() noexcept { *this = AString(); }

  std::size_t find(AString const & what, std::size_t from = 0) const;
  std::size_t find(wchar_t what, std::size_t from = 0) const;
  std::size_t rfind(wchar_t what) const;
  AString substr(std::size_t from, std::size_t count = npos) const;
  bool StartsWith(AString const & head) const;
  bool EndsWith(AString const & tail) const;
  AString Trimmed() const;
  AString ToLower() const;
  /// The pieces between any of the separator characters; empty pieces are left out.
  std::vector<AString> Tokenize(AString const & separators) const;
  /// True for an optional sign and at least one digit of the base, and nothing else.
  bool IsNumber(int base) const;

  /// Negative, zero or positive; by character code.
  int Compare(AString const & other) const noexcept;
  int compare(AString const & other) const noexcept { return Compare(other); }
  int CompareNoCase(AString const & other) const noexcept;
  static bool MatchNoCase(AString const & a, AString const & b) noexcept;

  /// Order of name maps: without case.
  struct NoCaseLess {
    bool operator()(AString const & a, AString const & b) const noexcept { return a.CompareNoCase(b) < 0; }
  };

  /// printf-like formatting of texts (%s), integers (%d, %ld, %lu, %x) and doubles (%g, %e, %f with precision).
  /// Arguments are checked by type, not trusted to match: an argument that does not fit is shown as it is.
  template <class... Args> static AString Format(AString const & format, Args const &... args) {
    FormatArgument const list[] = {FormatArgument(args)..., FormatArgument()};
    return FormatList(format, list, sizeof...(args));
  }

private:
  static Buffer * MakeBuffer(std::size_t length);
  static void Release(Buffer * buffer) noexcept;

  struct FormatArgument {
    enum class Kind { None, Text, Signed, Unsigned, Real } kind = Kind::None;
    std::wstring_view text;
    long long number = 0;
    double real = 0.0;

    FormatArgument() = default;
    FormatArgument(AString const & value) : kind(Kind::Text), text(value.View()) {}
    FormatArgument(wchar_t const * value) : kind(Kind::Text), text(value ? value : L"") {}
    FormatArgument(double value) : kind(Kind::Real), real(value) {}
    template <class Number>
    requires std::is_integral_v<Number> || std::is_enum_v<Number> FormatArgument(Number value)
        : kind(std::is_unsigned_v<Number> ? Kind::Unsigned : Kind::Signed), number(static_cast<long long>(value)) {}
  };
  static AString FormatList(AString const & format, FormatArgument const * arguments, std::size_t count);

  Buffer * m_buffer = nullptr;
};

inline bool operator==(AString const & a, AString const & b) noexcept { return a.View() == b.View(); }
inline bool operator!=(AString const & a, AString const & b) noexcept { return a.View() != b.View(); }
inline bool operator<(AString const & a, AString const & b) noexcept { return a.View() < b.View(); }
inline bool operator>(AString const & a, AString const & b) noexcept { return b < a; }
AString operator+(AString const & a, AString const & b);

template <> struct std::hash<AString> {
  std::size_t operator()(AString const & text) const noexcept { return std::hash<std::wstring_view>()(text.View()); }
};
