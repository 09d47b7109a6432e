#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

namespace rf {
namespace {

constexpr std::size_t MOST_PAIRS_A_LINE = 4;
constexpr std::size_t MOST_IMPEDANCES_A_LINE = 8;
constexpr double SMALLEST_MAGNITUDE = 1e-20; // -400 dB

/** Puts one data set together; refuses what the format can't hold. */
class TextMaker {
public:
  TextMaker(std::string const & name, TouchstoneOptions const & options) : m_Name(name), m_Options(options) {}

  void Check(std::vector<Port> const & ports, std::vector<double> const & frequencies,
             std::vector<SMatrix> const & matrices) const {
    if (m_Options.digits < 1 || m_Options.digits > 17)
      Refuse(fmt::format("{} digits can't be written", m_Options.digits), "ask for 1 to 17");
    if (ports.empty())
      Refuse("there are no ports", "give at least one");
    if (frequencies.size() != matrices.size())
      Refuse(fmt::format("there are {} frequencies and {} matrices", frequencies.size(), matrices.size()),
             "give one matrix for each frequency");
    for (std::size_t i = 0; i < frequencies.size(); ++i)
      CheckPoint(ports.size(), i > 0 ? frequencies[i - 1] : -1, frequencies[i], matrices[i]);
  }

  void AddHeader(std::vector<std::string> const & header) {
    for (std::string const & text : header) {
      std::size_t position = 0;
      do { // a line break in a header line must not end its being a comment
        std::size_t const end = std::min(text.find_first_of("\r\n", position), text.size());
        m_Text += "! " + text.substr(position, end - position) + "\n";
        position = end + 1;
      } while (position < text.size());
    }
  }

  void AddOptions(double z0) { m_Text += fmt::format("# Hz S {} R {}\n", FormatName(), z0); }

  // The order of the keywords is the format's; its two-port columns stand as version 1 has them.
  void AddKeywords(std::vector<Port> const & ports, std::size_t frequencies) {
    m_Text += "[Version] 2.0\n";
    AddOptions(ports.front().z0);
    m_Text += fmt::format("[Number of Ports] {}\n", ports.size());
    if (ports.size() == 2)
      m_Text += "[Two-Port Data Order] 21_12\n";
    m_Text += fmt::format("[Number of Frequencies] {}\n[Reference]", frequencies);
    for (std::size_t i = 0; i < ports.size(); ++i)
      m_Text += fmt::format("{}{}", i > 0 && i % MOST_IMPEDANCES_A_LINE == 0 ? "\n" : " ", ports[i].z0);
    m_Text += "\n[Network Data]\n";
  }

  void AddEnd() { m_Text += "[End]\n"; }

  void AddPoint(double frequency, SMatrix const & matrix) {
    std::size_t const ports = matrix.Ports();
    m_Text += fmt::format("{}", frequency);
    for (std::size_t row = 0; row < ports; ++row) {
      for (std::size_t column = 0; column < ports; ++column) {
        bool const wraps = column > 0 && column % MOST_PAIRS_A_LINE == 0;
        if (wraps || (ports > 2 && row > 0 && column == 0))
          m_Text += "\n";
        AddPair(ports == 2 ? matrix(column, row) : matrix(row, column));
      }
    }
    m_Text += "\n";
  }

  std::string Take() { return std::move(m_Text); }

private:
  [[noreturn]] void Refuse(std::string const & message, std::string const & remedy) const {
    throw TouchstoneError(m_Name + ": " + message + "; " + remedy);
  }

  void CheckPoint(std::size_t ports, double before, double frequency, SMatrix const & matrix) const {
    if (!std::isfinite(frequency) || frequency < 0 || frequency <= before)
      Refuse(fmt::format("the frequency {} Hz does not ascend from zero", frequency), "sort the frequencies");
    if (matrix.Ports() != ports)
      Refuse(fmt::format("the matrix at {} Hz has {} ports instead of {}", frequency, matrix.Ports(), ports),
             "give square matrices of all ports");
    for (std::size_t i = 0; i < ports * ports; ++i) {
      auto const value = matrix(i / ports, i % ports);
      if (!std::isfinite(value.real()) || !std::isfinite(value.imag()))
        Refuse(fmt::format("a value at {} Hz is not finite", frequency), "write finite values only");
    }
  }

  char const * FormatName() const {
    switch (m_Options.format) {
    case TouchstoneOptions::Format::MagnitudeDegrees:
      return "MA";
    case TouchstoneOptions::Format::DecibelDegrees:
      return "DB";
    default:
      return "RI";
    }
  }

  void AddPair(std::complex<double> value) {
    double first = value.real();
    double second = value.imag();
    if (m_Options.format != TouchstoneOptions::Format::RealImaginary) {
      first = std::abs(value);
      second = std::arg(value) * 180 / std::numbers::pi;
    }
    if (m_Options.format == TouchstoneOptions::Format::DecibelDegrees)
      first = 20 * std::log10(std::max(first, SMALLEST_MAGNITUDE));
    for (double number : {first, second})
      fmt::format_to(std::back_inserter(m_Text), " {: .{}e}", number, m_Options.digits - 1);
  }

  std::string const & m_Name;
  TouchstoneOptions const & m_Options;
  std::string m_Text;
};

} // namespace

std::string TouchstoneText(std::string const & name, std::vector<std::string> const & header,
                           std::vector<Port> const & ports, std::vector<double> const & frequencies,
                           std::vector<SMatrix> const & matrices, TouchstoneOptions const & options) {
  TextMaker maker(name, options);
  maker.Check(ports, frequencies, matrices);
  maker.AddHeader(header);
  bool const isSecondVersion =
      std::any_of(ports.begin(), ports.end(), [&](Port const & port) { return port.z0 != ports.front().z0; });
  if (isSecondVersion)
    maker.AddKeywords(ports, frequencies.size());
  else
    maker.AddOptions(ports.front().z0);
  for (std::size_t i = 0; i < frequencies.size(); ++i)
    maker.AddPoint(frequencies[i], matrices[i]);
  if (isSecondVersion)
    maker.AddEnd();
  return maker.Take();
}

std::string TouchstoneExtension(std::size_t ports) { return fmt::format(".s{}p", ports); }

} // namespace rf
