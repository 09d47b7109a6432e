#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"

#include "products/rfcircuit/engine/touchstone/ByteSource.h"
#include "products/rfcircuit/engine/touchstone/FewerPorts.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneHead.h"
#include "products/rfcircuit/engine/touchstone/TouchstonePoint.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneScanner.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace rf {
namespace {

constexpr std::size_t NOISE_NUMBERS = 5;
constexpr std::size_t POINTS_BEFORE_RESERVING = 1000;
constexpr std::uint64_t MOST_RESERVED = 1u << 23; // a file may claim any size

/** Reads one text from its beginning to its end. */
class Reading {
public:
  Reading(IByteSource & source, std::string const & name, std::optional<std::size_t> ports)
      : m_Name(name), m_Bytes(source.Size()), m_Scanner(source, m_Name),
        m_Head(TouchstoneHeadReader(m_Scanner, ports, PortsOfTouchstoneName(name)).Read()), m_Maker(m_Head) {}

  TouchstoneData Read() {
    while (m_IsInNetworkData)
      ReadLineStart();
    CheckCount();
    TellWhatWasLeftOut();
    TouchstoneData data;
    data.name = m_Name;
    data.network = std::move(m_Network);
    data.network.z0 = m_Head.z0;
    data.comments = m_Scanner.Comments();
    data.information = std::move(m_Head.information);
    data.facts = m_Head.facts;
    data.facts.bytes = m_Scanner.BytesRead();
    data.facts.lines = m_Scanner.Place().line - (m_Scanner.Place().column == 1 ? 1 : 0);
    data.notes = std::move(m_Head.notes);
    return data;
  }

private:
  void ReadLineStart() {
    char const next = m_Scanner.Next();
    if (next == TouchstoneScanner::END_OF_LINE)
      m_Scanner.PassLineEnd();
    else if (next == TouchstoneScanner::END_OF_TEXT)
      End(m_Head.HasKeywords() ? "[End] is missing" : "");
    else if (next == '[')
      ReadKeyword();
    else if (next == '#')
      PassOptionLine();
    else
      ReadPoint();
  }

  void End(std::string const & note) {
    m_IsInNetworkData = false;
    m_EndPlace = m_Scanner.Place();
    if (!note.empty())
      Note(m_Scanner.Place().line, note);
  }

  void PassOptionLine() {
    if (!m_Head.facts.hasOptionLine)
      m_Scanner.Fail("the option line stands behind the data", "expected it before the first frequency");
    if (m_IgnoredOptionLines++ == 0)
      Note(m_Scanner.Place().line, "further option lines were ignored");
    m_Scanner.Line();
  }

  void ReadKeyword() {
    TouchstonePlace const place = m_Scanner.Place();
    m_EndPlace = place;
    std::string const name = m_Scanner.Keyword();
    if (!m_Head.HasKeywords())
      m_Scanner.Fail(place, KeywordText(name) + " stands in a file of version 1",
                     "expected [Version] 2.0 at its beginning");
    if (name == "noise data")
      PassNoise();
    else if (name == "end")
      PassEnd();
    else
      m_Scanner.Fail(place, KeywordText(name) + " stands behind the network data",
                     "expected a frequency, [Noise Data] or [End]");
  }

  void ReadPoint() {
    TouchstonePlace const place = m_Scanner.Place();
    double const frequency = m_Scanner.Number(m_Head.frequencyShift);
    double const before = m_Network.frequencies.empty() ? -1 : m_Network.frequencies.back();
    if (!(frequency >= 0))
      m_Scanner.Fail(place, fmt::format("the frequency {} Hz is negative", frequency), "expected zero or more");
    m_Numbers.clear();
    if (!(frequency > before)) {
      if (MayHaveNoise() && IsNoiseLine())
        return PassNoise();
      if (frequency < before)
        m_Scanner.Fail(place, fmt::format("the frequency {} Hz stands behind {} Hz", frequency, before),
                       fmt::format("expected rising frequencies, of {}", PortCount(m_Head.ports)));
    }
    ReadNumbers(frequency);
    if (frequency == before)
      return SkipDuplicate(place);
    auto matrix = m_Maker.Make(m_Numbers);
    if (!matrix)
      RefuseValues(place, frequency);
    m_Network.frequencies.push_back(frequency);
    m_Network.matrices.push_back(std::move(*matrix));
    if (m_Network.frequencies.size() == POINTS_BEFORE_RESERVING)
      Reserve();
  }

  void ReadNumbers(double frequency) {
    std::size_t const count = m_Maker.Numbers();
    bool const isFirst = m_Network.frequencies.empty() && !m_Head.HasKeywords();
    FewerPorts fewer(isFirst ? frequency * std::pow(10, -m_Head.frequencyShift) : 0);
    while (m_Numbers.size() < count) {
      char const next = m_Scanner.Next();
      if (next == TouchstoneScanner::END_OF_LINE) {
        m_Scanner.PassLineEnd();
        if (isFirst)
          fewer.EndLine(m_Numbers);
        continue;
      }
      if (next == TouchstoneScanner::END_OF_TEXT || next == '[' || next == '#')
        m_Scanner.Fail(
            fmt::format("the point at {} Hz ends after {} of {} numbers", frequency, m_Numbers.size(), count),
            fmt::format("expected those of {}", PortCount(m_Head.ports)));
      m_Numbers.push_back(m_Scanner.Number());
    }
    char const next = m_Scanner.Next();
    if (next != TouchstoneScanner::END_OF_LINE && next != TouchstoneScanner::END_OF_TEXT)
      m_Scanner.Fail(fmt::format("the line goes on after the {} numbers of the point at {} Hz", count, frequency),
                     fmt::format("expected its end: the file was read with {}", PortCount(m_Head.ports)));
    if (isFirst)
      CheckPorts(fewer);
  }

  void CheckPorts(FewerPorts & fewer) {
    fewer.EndLine(m_Numbers);
    if (auto const ports = fewer.Suspected())
      m_Scanner.Fail(fmt::format("the lines look like points of {} each", PortCount(*ports)),
                     fmt::format("expected a point of {} over several lines", PortCount(m_Head.ports)));
  }

  void SkipDuplicate(TouchstonePlace const & place) {
    if (m_Duplicates++ == 0)
      m_FirstDuplicate = place.line;
  }

  // For as many points as the rest of the text can hold if they go on as they began.
  void Reserve() {
    std::uint64_t const bytes = m_Scanner.BytesRead();
    if (m_Bytes <= bytes)
      return;
    std::uint64_t const expected = m_Bytes / (bytes / POINTS_BEFORE_RESERVING + 1);
    auto const count = static_cast<std::size_t>(std::min(expected, MOST_RESERVED));
    m_Network.frequencies.reserve(count);
    m_Network.matrices.reserve(count);
  }

  [[noreturn]] void RefuseValues(TouchstonePlace const & place, double frequency) {
    if (m_Head.facts.parameters == 'S')
      m_Scanner.Fail(place, fmt::format("a value at {} Hz is too large", frequency), "expected finite S-parameters");
    m_Scanner.Fail(place,
                   fmt::format("the {}-parameters at {} Hz have no S-parameters", m_Head.facts.parameters, frequency),
                   "expected finite ones that the reference impedances allow");
  }

  bool MayHaveNoise() const { return m_Head.ports == 2 && !m_Head.HasKeywords(); }

  // Version 1 tells noise data by nothing but a frequency that doesn't rise.
  bool IsNoiseLine() {
    while (m_Numbers.size() < m_Maker.Numbers()) {
      char const next = m_Scanner.Next();
      if (next == TouchstoneScanner::END_OF_LINE || next == TouchstoneScanner::END_OF_TEXT)
        break;
      m_Numbers.push_back(m_Scanner.Number());
    }
    return m_Numbers.size() + 1 == NOISE_NUMBERS;
  }

  // Begins behind what told of it: its keyword, or its first line.
  void PassNoise() {
    std::size_t const line = m_Scanner.Place().line;
    std::size_t & lines = m_Head.facts.noiseLines;
    lines = m_Head.HasKeywords() ? 0 : 1;
    for (;;) {
      char const next = m_Scanner.Next();
      if (next == TouchstoneScanner::END_OF_LINE) {
        m_Scanner.PassLineEnd();
        continue;
      }
      if (next == TouchstoneScanner::END_OF_TEXT || (next == '[' && m_Head.HasKeywords()))
        break;
      if (next == '#')
        PassOptionLine();
      else
        PassNoiseLine();
    }
    Note(line, fmt::format("{} lines of noise data were skipped", lines));
    if (m_Scanner.Next() == TouchstoneScanner::END_OF_TEXT)
      return End(m_Head.HasKeywords() ? "[End] is missing" : "");
    TouchstonePlace const place = m_Scanner.Place();
    if (m_Scanner.Keyword() != "end")
      m_Scanner.Fail(place, "a keyword stands behind the noise data", "expected [End]");
    PassEnd();
  }

  void PassNoiseLine() {
    std::size_t count = 0;
    TouchstonePlace const place = m_Scanner.Place();
    for (char next = m_Scanner.Next(); next != TouchstoneScanner::END_OF_LINE && next != TouchstoneScanner::END_OF_TEXT;
         next = m_Scanner.Next(), ++count)
      m_Scanner.Number();
    if (count != NOISE_NUMBERS)
      m_Scanner.Fail(place, fmt::format("a line of noise data has {} numbers", count),
                     fmt::format("expected {}, as a frequency that does not rise begins noise data", NOISE_NUMBERS));
    ++m_Head.facts.noiseLines;
  }

  void PassEnd() {
    m_IsInNetworkData = false;
    for (char next = m_Scanner.Next(); next != TouchstoneScanner::END_OF_TEXT; next = m_Scanner.Next()) {
      if (next != TouchstoneScanner::END_OF_LINE)
        return Note(m_Scanner.Place().line, "what stands behind [End] was not read");
      m_Scanner.PassLineEnd();
    }
  }

  void CheckCount() {
    std::size_t const count = m_Network.frequencies.size() + m_Duplicates;
    if (count == 0)
      m_Scanner.Fail(m_EndPlace, "there is no network data", "expected at least one frequency");
    if (m_Head.frequencies && *m_Head.frequencies != count)
      m_Scanner.Fail(m_EndPlace, fmt::format("the network data end after {} frequencies", count),
                     fmt::format("expected {}, as [Number of Frequencies] tells", *m_Head.frequencies));
  }

  void TellWhatWasLeftOut() {
    if (m_Duplicates > 0)
      Note(m_FirstDuplicate,
           fmt::format("a frequency stands there again: the first was kept, {} skipped", m_Duplicates));
    if (m_Scanner.CommentsLeftOut() > 0)
      Note(0, fmt::format("{} further comments were not kept", m_Scanner.CommentsLeftOut()));
  }

  void Note(std::size_t line, std::string const & text) { m_Head.notes.push_back({line, text}); }

  std::string m_Name;
  std::uint64_t m_Bytes; ///< of the whole text, if that is known
  TouchstoneScanner m_Scanner;
  TouchstoneHead m_Head;
  TouchstonePointMaker m_Maker;
  SParameterTable m_Network;
  std::vector<double> m_Numbers; ///< of the point that is being read, without its frequency
  bool m_IsInNetworkData = true;
  TouchstonePlace m_EndPlace; ///< of the network data
  std::size_t m_IgnoredOptionLines = 0;
  std::size_t m_Duplicates = 0;
  std::size_t m_FirstDuplicate = 0;
};

} // namespace

TouchstoneData ReadTouchstone(std::filesystem::path const & path, std::optional<std::size_t> ports) {
  FileBytes source(path);
  return Reading(source, path.string(), ports).Read();
}

TouchstoneData ReadTouchstoneText(std::string_view text, std::string const & name, std::optional<std::size_t> ports) {
  TextBytes source(text);
  return Reading(source, name, ports).Read();
}

std::optional<std::size_t> PortsOfTouchstoneName(std::string const & name) {
  std::size_t const dot = name.find_last_of('.');
  if (dot == std::string::npos || name.size() < dot + 4 || (name[dot + 1] | 0x20) != 's' || (name.back() | 0x20) != 'p')
    return std::nullopt;
  std::size_t ports = 0;
  char const * const last = name.data() + name.size() - 1;
  auto const result = std::from_chars(name.data() + dot + 2, last, ports);
  if (result.ec != std::errc() || result.ptr != last || ports == 0)
    return std::nullopt;
  return ports;
}

std::string Summary(SParameterTable const & network) {
  std::size_t const points = network.frequencies.size();
  std::string text = fmt::format("{}, {} point{}", PortCount(network.Ports()), points, points == 1 ? "" : "s");
  if (!network.frequencies.empty())
    text += fmt::format(" from {} to {} Hz", network.frequencies.front(), network.frequencies.back());
  if (std::ranges::all_of(network.z0, [&](double z0) { return z0 == network.z0[0]; }))
    return text + (network.z0.empty() ? "" : fmt::format(", {} ohm", network.z0[0]));
  char const * separator = ", ";
  for (double const z0 : network.z0) {
    text += fmt::format("{}{}", separator, z0);
    separator = " ";
  }
  return text + " ohm";
}

} // namespace rf
