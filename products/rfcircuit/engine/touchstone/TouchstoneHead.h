#pragma once

#include "products/rfcircuit/engine/touchstone/TouchstoneData.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneScanner.h"

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace rf {

/** What stands before the numbers of a Touchstone text and says how they are meant. */
struct TouchstoneHead {
  TouchstoneFacts facts;
  std::size_t ports = 0;
  std::vector<double> z0;                 ///< one for each port
  int frequencyShift = 9;                 ///< frequencies are in Hz times ten to the power of it
  std::optional<std::size_t> frequencies; ///< as many as the text promises
  std::vector<std::string> information;
  std::vector<TouchstoneNote> notes;

  bool HasKeywords() const { return facts.version[0] == '2'; }
};

/** Reads a text up to its first number; faults are those of the scanner. */
class TouchstoneHeadReader {
public:
  /** The scanner stays the caller's.  `given` is the caller's number of ports, `named` that of the file's name. */
  TouchstoneHeadReader(TouchstoneScanner & scanner, std::optional<std::size_t> given, std::optional<std::size_t> named)
      : m_Scanner(scanner), m_Given(given), m_Named(named) {}

  TouchstoneHead Read();

private:
  void ReadOptions();
  void ReadOption(TouchstonePlace const & place, std::string const & word);
  void ReadImpedances(TouchstonePlace const & place, std::string const & glued);
  void AddImpedance(TouchstonePlace const & place, double value);
  /** False when the network data begin. */
  bool ReadKeyword();
  /** False for a name that is none of a setting. */
  bool ReadSetting(std::string const & name);
  std::string Argument(TouchstonePlace & place);
  void ReadVersion();
  void ReadLayout();
  void ReadTwoPortOrder();
  void ReadReference();
  void ReadInformation();
  std::size_t WholeNumber(std::size_t most);
  void ExpectLineEnd(std::string const & after);

  void Complete();
  void DecidePorts();
  void DecideImpedances();
  void CheckTwoPorts();
  void Note(std::size_t line, std::string const & text) { m_Head.notes.push_back({line, text}); }
  bool Has(char const * keyword) const { return m_Keywords.contains(keyword); }

  TouchstoneScanner & m_Scanner;
  std::optional<std::size_t> m_Given;
  std::optional<std::size_t> m_Named;
  TouchstoneHead m_Head;
  std::set<std::string> m_Keywords; ///< those that were read
  std::set<std::string> m_OptionKinds;
  TouchstonePlace m_OptionPlace;
  std::vector<double> m_Impedances;
  TouchstonePlace m_ImpedancePlace;
  std::size_t m_IgnoredOptionLines = 0;
};

} // namespace rf
