#include "products/rfcircuit/engine/touchstone/TouchstoneHead.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace rf {
namespace {

constexpr std::size_t MOST_PORTS = 10000;
constexpr std::size_t MOST_FREQUENCIES = 1u << 30;
constexpr std::size_t MOST_INFORMATION = 64 * 1024;
constexpr std::size_t LONGEST_WORD_SHOWN = 40;
constexpr double USUAL_IMPEDANCE = 50;

struct Unit {
  char const * name;
  int shift;
};
constexpr Unit UNITS[] = {{"Hz", 0}, {"kHz", 3}, {"MHz", 6}, {"GHz", 9}};

char const * const OPTIONS = "expected Hz, kHz, MHz or GHz; S, Y, Z, G or H; MA, DB or RI; R and an impedance";
char const * const KEYWORDS =
    "expected [Number of Ports], [Two-Port Data Order], [Number of Frequencies], [Number of Noise Frequencies], "
    "[Reference], [Matrix Format], [Begin Information] or [Network Data]";

std::string Upper(std::string_view text) {
  std::string upper(text);
  for (char & c : upper)
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return upper;
}

bool BeginsNumber(char c) { return (c >= '0' && c <= '9') || c == '.' || c == '+' || c == '-'; }

} // namespace

TouchstoneHead TouchstoneHeadReader::Read() {
  for (;;) {
    char const next = m_Scanner.Next();
    if (next == TouchstoneScanner::END_OF_TEXT)
      m_Scanner.Fail("there is no network data",
                     m_Head.HasKeywords() ? "expected [Network Data]" : "expected a line that begins with a frequency");
    if (next == TouchstoneScanner::END_OF_LINE) {
      m_Scanner.PassLineEnd();
    } else if (next == '#') {
      ReadOptions();
    } else if (next == '[') {
      if (!ReadKeyword())
        break;
    } else {
      if (m_Head.HasKeywords())
        m_Scanner.Fail("something other than a keyword stands before [Network Data]", KEYWORDS);
      break;
    }
  }
  Complete();
  return std::move(m_Head);
}

void TouchstoneHeadReader::ReadOptions() {
  if (m_Head.facts.hasOptionLine) {
    if (m_IgnoredOptionLines++ == 0)
      Note(m_Scanner.Place().line, "further option lines were ignored");
    m_Scanner.Line();
    return;
  }
  m_Head.facts.hasOptionLine = true;
  m_OptionPlace = m_Scanner.Place();
  std::string_view const glued = m_Scanner.Word().substr(1); // `#GHz`, without a blank
  if (!glued.empty())
    ReadOption(m_OptionPlace, std::string(glued));
  for (char next = m_Scanner.Next(); next != TouchstoneScanner::END_OF_LINE; next = m_Scanner.Next()) {
    if (next == TouchstoneScanner::END_OF_TEXT)
      return;
    TouchstonePlace const place = m_Scanner.Place();
    ReadOption(place, std::string(m_Scanner.Word()));
  }
}

void TouchstoneHeadReader::ReadOption(TouchstonePlace const & place, std::string const & word) {
  std::string const option = Upper(word);
  TouchstoneFacts & facts = m_Head.facts;
  char const * kind = nullptr;
  if (option.size() == 1 && std::string_view("SYZGH").find(option[0]) != std::string_view::npos) {
    kind = "the kind of parameters";
    facts.parameters = option[0];
  } else if (option == "MA" || option == "DB" || option == "RI") {
    kind = "the format";
    facts.format = option == "MA"   ? TouchstoneFacts::Format::MagnitudeDegrees
                   : option == "DB" ? TouchstoneFacts::Format::DecibelDegrees
                                    : TouchstoneFacts::Format::RealImaginary;
  } else if (option[0] == 'R') {
    kind = "the impedance";
    ReadImpedances(place, word.substr(1));
  } else {
    for (Unit const & unit : UNITS)
      if (option == Upper(unit.name)) {
        kind = "the unit of frequencies";
        facts.frequencyUnit = unit.name;
        m_Head.frequencyShift = unit.shift;
      }
  }
  if (!kind)
    m_Scanner.Fail(place, fmt::format("the option line has '{}'", word.substr(0, LONGEST_WORD_SHOWN)), OPTIONS);
  if (!m_OptionKinds.insert(kind).second)
    m_Scanner.Fail(place, fmt::format("the option line tells {} twice", kind), "expected it once");
}

void TouchstoneHeadReader::ReadImpedances(TouchstonePlace const & place, std::string const & glued) {
  m_ImpedancePlace = place;
  if (!glued.empty()) { // `R50`
    double value = 0;
    char const * const last = glued.data() + glued.size();
    auto const result = std::from_chars(glued.data(), last, value);
    if (result.ec != std::errc() || result.ptr != last)
      m_Scanner.Fail(place, fmt::format("the option line has 'R{}'", glued.substr(0, LONGEST_WORD_SHOWN)), OPTIONS);
    AddImpedance(place, value);
  }
  while (BeginsNumber(m_Scanner.Next())) {
    TouchstonePlace const number = m_Scanner.Place();
    AddImpedance(number, m_Scanner.Number());
  }
  if (m_Impedances.empty())
    Note(place.line, fmt::format("the option line has R without an impedance: {} ohm were taken", USUAL_IMPEDANCE));
}

void TouchstoneHeadReader::AddImpedance(TouchstonePlace const & place, double value) {
  if (!(value > 0) || !std::isfinite(value))
    m_Scanner.Fail(place, fmt::format("{} is no reference impedance", value), "expected ohms above zero");
  m_Impedances.push_back(value);
}

bool TouchstoneHeadReader::ReadKeyword() {
  TouchstonePlace const place = m_Scanner.Place();
  std::string name = m_Scanner.Keyword();
  if (name == "two-port order")
    name = "two-port data order";
  if (name == "mixed-mode order")
    m_Scanner.Fail(place, "[Mixed-Mode Order] tells of mixed-mode parameters, which are not read",
                   "expected a file with single-ended parameters");
  if (name != "version" && !m_Head.HasKeywords())
    m_Scanner.Fail(place, fmt::format("[{}] stands in a file of version 1", name), "expected [Version] 2.0 before it");
  if (!m_Keywords.insert(name).second)
    m_Scanner.Fail(place, fmt::format("[{}] stands here for the second time", name), "expected it once");
  if (name != "network data" && !ReadSetting(name))
    m_Scanner.Fail(place, fmt::format("the keyword [{}] is unknown", name), KEYWORDS);
  if (name != "reference" && name != "begin information")
    ExpectLineEnd(fmt::format("[{}]", name));
  return name != "network data";
}

bool TouchstoneHeadReader::ReadSetting(std::string const & name) {
  if (name == "version")
    ReadVersion();
  else if (name == "number of ports")
    m_Head.ports = WholeNumber(MOST_PORTS);
  else if (name == "number of frequencies")
    m_Head.frequencies = WholeNumber(MOST_FREQUENCIES);
  else if (name == "number of noise frequencies")
    WholeNumber(MOST_FREQUENCIES);
  else if (name == "two-port data order")
    ReadTwoPortOrder();
  else if (name == "matrix format")
    ReadLayout();
  else if (name == "reference")
    ReadReference();
  else if (name == "begin information")
    ReadInformation();
  else
    return false;
  return true;
}

std::string TouchstoneHeadReader::Argument(TouchstonePlace & place) {
  char const next = m_Scanner.Next();
  place = m_Scanner.Place();
  if (next == TouchstoneScanner::END_OF_LINE || next == TouchstoneScanner::END_OF_TEXT)
    return "";
  return std::string(m_Scanner.Word());
}

void TouchstoneHeadReader::ReadVersion() {
  TouchstonePlace place;
  std::string const version = Argument(place);
  if (version != "1.0" && version != "1.1" && version != "2.0" && version != "2.1")
    m_Scanner.Fail(place, fmt::format("the version is '{}'", version), "expected 1.0, 1.1, 2.0 or 2.1");
  m_Head.facts.version = version;
}

void TouchstoneHeadReader::ReadTwoPortOrder() {
  TouchstonePlace place;
  std::string const order = Argument(place);
  if (order != "12_21" && order != "21_12")
    m_Scanner.Fail(place, fmt::format("the two-port data order is '{}'", order), "expected 12_21 or 21_12");
  m_Head.facts.isTwoPortOrder21First = order == "21_12";
}

void TouchstoneHeadReader::ReadLayout() {
  TouchstonePlace place;
  std::string const word = Argument(place);
  std::string const layout = Upper(word);
  if (layout != "FULL" && layout != "LOWER" && layout != "UPPER")
    m_Scanner.Fail(place, fmt::format("the matrix format is '{}'", word), "expected Full, Lower or Upper");
  m_Head.facts.layout = layout == "FULL"    ? TouchstoneFacts::Layout::Full
                        : layout == "LOWER" ? TouchstoneFacts::Layout::Lower
                                            : TouchstoneFacts::Layout::Upper;
}

void TouchstoneHeadReader::ReadReference() {
  m_Impedances.clear(); // they stand above those of the option line
  m_ImpedancePlace = m_Scanner.Place();
  for (;;) {
    char const next = m_Scanner.Next();
    if (next == TouchstoneScanner::END_OF_LINE)
      m_Scanner.PassLineEnd();
    else if (next == '[' || next == '#' || next == TouchstoneScanner::END_OF_TEXT)
      break;
    else {
      TouchstonePlace const place = m_Scanner.Place();
      AddImpedance(place, m_Scanner.Number());
    }
  }
}

void TouchstoneHeadReader::ReadInformation() {
  TouchstonePlace const begin = m_Scanner.Place();
  std::size_t room = MOST_INFORMATION;
  for (m_Scanner.Line();;) {
    std::string line;
    if (m_Scanner.IsAtEnd())
      m_Scanner.Fail(begin, "[Begin Information] is not closed", "expected [End Information]");
    line = m_Scanner.Line();
    if (Upper(line).starts_with("[END INFORMATION]"))
      return;
    if (room > 0)
      m_Head.information.push_back(line);
    room -= std::min(room, line.size() + 1);
  }
}

std::size_t TouchstoneHeadReader::WholeNumber(std::size_t most) {
  TouchstonePlace place;
  std::string const word = Argument(place);
  std::size_t number = 0;
  char const * const last = word.data() + word.size();
  auto const result = std::from_chars(word.data(), last, number);
  if (result.ec != std::errc() || result.ptr != last || number == 0 || number > most)
    m_Scanner.Fail(place, fmt::format("'{}' is no such number", word.substr(0, LONGEST_WORD_SHOWN)),
                   fmt::format("expected a whole number from 1 to {}", most));
  return number;
}

void TouchstoneHeadReader::ExpectLineEnd(std::string const & after) {
  char const next = m_Scanner.Next();
  if (next != TouchstoneScanner::END_OF_LINE && next != TouchstoneScanner::END_OF_TEXT)
    m_Scanner.Fail("the line goes on after " + after, "expected the end of the line");
}

void TouchstoneHeadReader::Complete() {
  if (!m_Head.facts.hasOptionLine)
    Note(0, "there is no option line: GHz S MA R 50 was taken");
  DecidePorts();
  DecideImpedances();
  CheckTwoPorts();
  if (m_Head.HasKeywords() && !m_Head.frequencies)
    Note(0, "there is no [Number of Frequencies]: whether all are there can't be told");
}

void TouchstoneHeadReader::DecidePorts() {
  if (m_Given && (*m_Given == 0 || *m_Given > MOST_PORTS))
    m_Scanner.Fail(fmt::format("{} ports were asked for", *m_Given), fmt::format("expected 1 to {}", MOST_PORTS));
  if (m_Head.HasKeywords()) {
    if (m_Head.ports == 0)
      m_Scanner.Fail("[Network Data] begins without a number of ports", "expected [Number of Ports] before it");
    if (m_Given && *m_Given != m_Head.ports)
      m_Scanner.Fail(fmt::format("the file has {} ports, asked for were {}", m_Head.ports, *m_Given),
                     "expected the same number");
  } else if (m_Given || m_Named) {
    m_Head.ports = m_Given ? *m_Given : *m_Named;
  } else {
    m_Scanner.Fail("the number of ports is not told", "expected a file name that ends with it, such as .s2p");
  }
  if (m_Named && *m_Named != m_Head.ports)
    Note(0, fmt::format("the name promises {} ports, the file was read with {}", *m_Named, m_Head.ports));
}

void TouchstoneHeadReader::DecideImpedances() {
  if (m_Impedances.empty() && !Has("reference"))
    m_Impedances.push_back(USUAL_IMPEDANCE);
  bool const isForAll = m_Impedances.size() == 1 && !Has("reference");
  if (!isForAll && m_Impedances.size() != m_Head.ports)
    m_Scanner.Fail(m_ImpedancePlace,
                   fmt::format("there are {} reference impedances for {} ports", m_Impedances.size(), m_Head.ports),
                   isForAll || Has("reference") ? "expected one for each port" : "expected one, or one for each port");
  if (m_Impedances.size() > 1 && m_Head.facts.version == "1.0")
    m_Head.facts.version = "1.1";
  m_Head.z0 = isForAll ? std::vector<double>(m_Head.ports, m_Impedances[0]) : m_Impedances;
  bool const isOfOne = std::ranges::all_of(m_Head.z0, [&](double z0) { return z0 == m_Head.z0[0]; });
  if (m_Head.facts.parameters != 'S' && !m_Head.HasKeywords() && !isOfOne)
    m_Scanner.Fail(m_OptionPlace,
                   fmt::format("{}-parameters of version 1 with several impedances", m_Head.facts.parameters),
                   "expected one impedance, by which they are normalised");
}

void TouchstoneHeadReader::CheckTwoPorts() {
  char const parameters = m_Head.facts.parameters;
  if ((parameters == 'G' || parameters == 'H') && m_Head.ports != 2)
    m_Scanner.Fail(m_OptionPlace, fmt::format("{}-parameters of {} ports", parameters, m_Head.ports),
                   "expected two ports for G- and H-parameters");
  bool const needsOrder =
      m_Head.HasKeywords() && m_Head.ports == 2 && m_Head.facts.layout == TouchstoneFacts::Layout::Full;
  if (needsOrder && !Has("two-port data order"))
    m_Scanner.Fail("[Network Data] of two ports begins without their order",
                   "expected [Two-Port Data Order] 21_12 or 12_21 before it");
}

} // namespace rf
