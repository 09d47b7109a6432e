#include "bench/touchstone/Files.h"

#include "bench/support/Measure.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <random>

namespace bench {

namespace {

using Format = rf::TouchstoneOptions::Format;

constexpr std::size_t kPointsAtATime = 1000;

rf::SMatrix RandomMatrix(std::size_t ports, std::mt19937 & random) {
  std::uniform_real_distribution<double> value(-1, 1);
  rf::SMatrix matrix(ports);
  for (std::size_t i = 0; i < ports * ports; ++i)
    matrix(i / ports, i % ports) = {value(random), value(random)};
  return matrix;
}

/// The lines of points, without those before and behind them.
std::string PointsOf(std::string const & text) {
  std::string const keyword = "[Network Data]\n";
  std::size_t const second = text.find(keyword);
  if (second == std::string::npos)
    return text.substr(text.find('\n') + 1);
  std::size_t const begin = second + keyword.size();
  return text.substr(begin, text.find('[', begin) - begin);
}

} // namespace

std::vector<FileCase> FileCases() {
  return {{"one_port_ri", 1, {Format::RealImaginary, 15}},
          {"two_ports_ri", 2, {Format::RealImaginary, 15}},
          {"two_ports_ri_6_digits", 2, {Format::RealImaginary, 6}},
          {"two_ports_ma", 2, {Format::MagnitudeDegrees, 15}},
          {"two_ports_db", 2, {Format::DecibelDegrees, 15}},
          {"eight_ports_ri", 8, {Format::RealImaginary, 15}},
          {"eight_ports_ri_2", 8, {Format::RealImaginary, 15}, true},
          {"one_port_ri_ghz", 1, {Format::RealImaginary, 15}, false, true}};
}

std::string MakeFile(std::string const & folder, FileCase const & fileCase, std::uint64_t bytes) {
  std::string const path = folder + "/" + fileCase.name + rf::TouchstoneExtension(fileCase.ports);
  std::ofstream file(path, std::ios::binary);
  std::mt19937 random(1);
  std::vector<rf::Port> ports(fileCase.ports);
  if (fileCase.hasSeveralImpedances)
    ports.back().z0 = 75;
  double frequency = 0;
  for (std::uint64_t written = 0; written < bytes && file;) {
    std::vector<double> frequencies;
    std::vector<rf::SMatrix> matrices;
    for (std::size_t i = 0; i < kPointsAtATime; ++i, frequency += 1e3) {
      frequencies.push_back(frequency);
      matrices.push_back(RandomMatrix(fileCase.ports, random));
    }
    std::string const text = rf::TouchstoneText(path, {}, ports, frequencies, matrices, fileCase.options);
    std::string points = PointsOf(text);
    if (written == 0) {
      std::string head = text.substr(0, text.find(points.substr(0, 200)));
      // How many points there will be isn't known yet, and may be left out.
      std::size_t const promise = head.find("[Number of Frequencies]");
      if (promise != std::string::npos)
        head.erase(promise, head.find('\n', promise) + 1 - promise);
      if (fileCase.isInGigahertz) // the same numbers mean other frequencies
        head.replace(head.find("# Hz"), 4, "# GHz");
      points = head + points;
    }
    file << points;
    written += points.size();
  }
  Require(static_cast<bool>(file.flush()), path + " can't be written");
  return path;
}

std::string TextOf(std::string const & path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

PlainSum SumOfNumbers(std::string const & text) {
  PlainSum result;
  char const * at = text.data();
  char const * const end = at + text.size();
  while (at < end) {
    if (*at == ' ' || *at == '\n') {
      ++at;
      continue;
    }
    double value = 0;
    auto const number = std::from_chars(at, end, value);
    if (number.ec != std::errc()) { // words of the head: to the end of their line
      while (at < end && *at != '\n')
        ++at;
      continue;
    }
    at = number.ptr;
    ++result.numbers;
    result.sum += value;
  }
  return result;
}

std::uint64_t BytesRead(std::string const & path, std::size_t bufferSize) {
  std::vector<char> buffer(bufferSize);
  std::ifstream file;
  file.rdbuf()->pubsetbuf(nullptr, 0);
  file.open(path, std::ios::binary);
  std::uint64_t sum = 0;
  while (file.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) || file.gcount() > 0)
    sum += static_cast<std::uint64_t>(file.gcount());
  return sum;
}

} // namespace bench
