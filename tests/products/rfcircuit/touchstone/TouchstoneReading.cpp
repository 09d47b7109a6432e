#include "tests/products/rfcircuit/touchstone/TouchstoneReading.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace rftest {
namespace {

std::complex<double> Pair(std::string const & format, double first, double second) {
  if (format == "RI")
    return {first, second};
  double const magnitude = format == "DB" ? std::pow(10, first / 20) : first;
  return std::polar(magnitude, second * M_PI / 180);
}

} // namespace

TouchstoneData ReadTouchstone(std::string const & text, std::size_t ports) {
  TouchstoneData data;
  std::istringstream lines(text);
  std::string format;
  std::vector<double> numbers;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("! ", 0) == 0) {
      data.comments.push_back(line.substr(2));
    } else if (line[0] == '#') {
      data.optionLine = line;
      std::istringstream words(line);
      std::string skip;
      words >> skip >> skip >> skip >> format;
    } else {
      std::istringstream words(line);
      std::size_t const before = numbers.size();
      for (double number; words >> number;)
        numbers.push_back(number);
      data.longestLine = std::max(data.longestLine, (numbers.size() - before) / 2);
    }
  }
  std::size_t const size = 1 + 2 * ports * ports;
  for (std::size_t at = 0; at + size <= numbers.size(); at += size) {
    data.frequencies.push_back(numbers[at]);
    rf::SMatrix matrix(ports);
    for (std::size_t i = 0; i < ports * ports; ++i) {
      auto const value = Pair(format, numbers[at + 1 + 2 * i], numbers[at + 2 + 2 * i]);
      (ports == 2 ? matrix(i % ports, i / ports) : matrix(i / ports, i % ports)) = value;
    }
    data.matrices.push_back(matrix);
  }
  return data;
}

} // namespace rftest
