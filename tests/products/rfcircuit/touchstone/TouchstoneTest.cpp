#include "tests/products/rfcircuit/RfSupport.h"
#include "tests/products/rfcircuit/touchstone/TouchstoneReading.h"

#include "products/rfcircuit/engine/touchstone/TouchstoneWriter.h"

#include <cmath>
#include <csignal>
#include <random>

#include <sys/resource.h>

namespace {

using namespace rftest;
using Format = rf::TouchstoneOptions::Format;

struct Network {
  std::vector<rf::Port> ports;
  std::vector<double> frequencies;
  std::vector<rf::SMatrix> matrices;

  Network(std::size_t portCount, std::size_t points) {
    std::mt19937 random(static_cast<unsigned>(portCount));
    std::uniform_real_distribution<double> value(-1, 1);
    for (std::size_t i = 0; i < portCount; ++i)
      ports.push_back({static_cast<int>(i) + 1, "V", 50, 0});
    for (std::size_t k = 0; k < points; ++k) {
      frequencies.push_back(1e9 / 3 * static_cast<double>(k));
      matrices.emplace_back(portCount);
      for (std::size_t i = 0; i < portCount * portCount; ++i)
        matrices.back()(i / portCount, i % portCount) = {value(random), value(random)};
    }
  }

  std::string Text(rf::TouchstoneOptions const & options = {}) const {
    return rf::TouchstoneText("x.snp", {"made by a test"}, ports, frequencies, matrices, options);
  }
};

std::string ErrorOfWriting(std::function<void()> const & action) {
  try {
    action();
  } catch (rf::TouchstoneError const & error) {
    return error.what();
  }
  ADD_FAILURE() << "no error was raised";
  return "";
}

void ExpectRoundTrip(std::size_t ports, rf::TouchstoneOptions const & options, double tolerance) {
  Network const network(ports, 5);
  auto const data = ReadTouchstone(network.Text(options), ports);
  EXPECT_EQ(data.frequencies, network.frequencies);
  ASSERT_EQ(data.matrices.size(), 5u);
  EXPECT_LE(data.longestLine, 4u);
  for (std::size_t k = 0; k < 5; ++k) {
    for (std::size_t i = 0; i < ports * ports; ++i)
      ExpectNear(data.matrices[k](i / ports, i % ports), network.matrices[k](i / ports, i % ports), tolerance);
  }
}

TEST(Touchstone, SurvivesARoundTripForAnyNumberOfPorts) {
  for (std::size_t ports : {1u, 2u, 3u, 4u, 5u, 9u, 12u})
    ExpectRoundTrip(ports, {}, 2e-15);
}

TEST(Touchstone, SurvivesARoundTripInAnyFormat) {
  for (Format format : {Format::RealImaginary, Format::MagnitudeDegrees, Format::DecibelDegrees})
    ExpectRoundTrip(2, {format, 15}, 1e-13);
}

TEST(Touchstone, SeventeenDigitsAreExactAndFewerAreFewer) {
  ExpectRoundTrip(3, {Format::RealImaginary, 17}, 0);
  ExpectRoundTrip(3, {Format::RealImaginary, 6}, 2e-6);
  ExpectRoundTrip(3, {Format::RealImaginary, 1}, 0.2);
}

TEST(Touchstone, TwoPortColumnsStandInTheOrder11_21_12_22) {
  Network network(2, 1);
  for (std::size_t i = 0; i < 4; ++i)
    network.matrices[0](i / 2, i % 2) = static_cast<double>(10 * (i / 2 + 1) + i % 2 + 1);
  EXPECT_EQ(network.Text({Format::RealImaginary, 2}), "! made by a test\n"
                                                      "# Hz S RI R 50\n"
                                                      "0  1.1e+01  0.0e+00  2.1e+01  0.0e+00  1.2e+01  0.0e+00  "
                                                      "2.2e+01  0.0e+00\n");
}

TEST(Touchstone, RowsOfLargerMatricesBeginNewLines) {
  Network network(5, 1);
  std::string const text = network.Text({Format::RealImaginary, 1});
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2 + 5 * 2);
}

TEST(Touchstone, OptionLineTellsFormatAndImpedance) {
  Network network(1, 1);
  network.ports[0].z0 = 75.5;
  EXPECT_EQ(ReadTouchstone(network.Text({Format::MagnitudeDegrees, 5}), 1).optionLine, "# Hz S MA R 75.5");
  EXPECT_EQ(ReadTouchstone(network.Text({Format::DecibelDegrees, 5}), 1).optionLine, "# Hz S DB R 75.5");
}

TEST(Touchstone, PortsOfDifferentImpedancesTakeVersionTwo) {
  Network network(2, 1);
  network.ports[1].z0 = 75.5;
  for (std::size_t i = 0; i < 4; ++i)
    network.matrices[0](i / 2, i % 2) = static_cast<double>(10 * (i / 2 + 1) + i % 2 + 1);
  EXPECT_EQ(network.Text({Format::RealImaginary, 2}), "! made by a test\n"
                                                      "[Version] 2.0\n"
                                                      "# Hz S RI R 50\n"
                                                      "[Number of Ports] 2\n"
                                                      "[Two-Port Data Order] 21_12\n"
                                                      "[Number of Frequencies] 1\n"
                                                      "[Reference] 50 75.5\n"
                                                      "[Network Data]\n"
                                                      "0  1.1e+01  0.0e+00  2.1e+01  0.0e+00  1.2e+01  0.0e+00  "
                                                      "2.2e+01  0.0e+00\n"
                                                      "[End]\n");
  Network three(3, 2);
  three.ports[2].z0 = 10;
  EXPECT_NE(three.Text().find("[Number of Ports] 3\n[Number of Frequencies] 2\n[Reference] 50 50 10\n"),
            std::string::npos);
}

TEST(Touchstone, NothingIsWrittenAsMinusFourHundredDecibels) {
  Network network(1, 1);
  network.matrices[0](0, 0) = 0;
  EXPECT_NE(network.Text({Format::DecibelDegrees, 3}).find("\n0 -4.00e+02  0.00e+00\n"), std::string::npos);
}

TEST(Touchstone, HeaderLinesStayCommentsWhateverTheyHold) {
  Network const network(1, 1);
  std::string const text =
      rf::TouchstoneText("x", {"one\n# GHz S MA R 1\r5 5 5", ""}, network.ports, network.frequencies, network.matrices);
  EXPECT_EQ(ReadTouchstone(text, 1).comments, (std::vector<std::string>{"one", "# GHz S MA R 1", "5 5 5", ""}));
}

TEST(Touchstone, DataThatTheFormatCannotHoldIsRefused) {
  auto const error = [](std::function<void(Network &)> const & damage) {
    Network network(2, 3);
    damage(network);
    return ErrorOfWriting([&] { network.Text(); });
  };
  EXPECT_NE(error([](Network & n) { n.ports.clear(); }).find("there are no ports"), std::string::npos);
  EXPECT_NE(error([](Network & n) { n.ports.pop_back(); }).find("has 2 ports instead of 1"), std::string::npos);
  EXPECT_NE(error([](Network & n) { n.matrices.pop_back(); }).find("3 frequencies and 2 matrices"), std::string::npos);
  EXPECT_NE(error([](Network & n) { n.frequencies[1] = n.frequencies[2]; }).find("does not ascend"), std::string::npos);
  EXPECT_NE(error([](Network & n) { n.frequencies[0] = -1; }).find("does not ascend"), std::string::npos);
  EXPECT_NE(error([](Network & n) { n.matrices[1](0, 1) = NAN; }).find("is not finite"), std::string::npos);
  Network const network(1, 1);
  for (int digits : {0, 18})
    EXPECT_NE(ErrorOfWriting([&] {
                network.Text({Format::RealImaginary, digits});
              }).find("digits can't be written"),
              std::string::npos);
}

void Write(Network const & network, std::filesystem::path const & path) {
  rf::WriteTouchstone(path, {"made by a test"}, network.ports, network.frequencies, network.matrices);
}

TEST(Touchstone, WritingReplacesTheTargetAndLeavesNothingBeside) {
  FolderOfFiles const folder;
  auto const path = folder.Write("a.s2p", "old");
  Network const network(2, 3);
  Write(network, path);
  EXPECT_EQ(Content(path), network.Text());
  EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(Touchstone, ANameThatPromisesAnotherNumberOfPortsIsRefused) {
  FolderOfFiles const folder;
  Network const network(3, 1);
  auto const path = folder.Path() / "a.S2P";
  EXPECT_EQ(ErrorOfWriting([&] { Write(network, path); }),
            path.string() + ": the name promises other than 3 ports; end it with .s3p");
  Write(network, folder.Path() / "a.s3p");
  Write(network, folder.Path() / "a.txt");
  EXPECT_EQ(rf::TouchstoneExtension(12), ".s12p");
}

TEST(Touchstone, AMissingFolderIsTold) {
  FolderOfFiles const folder;
  auto const path = folder.Path() / "none" / "a.s1p";
  EXPECT_EQ(ErrorOfWriting([&] { Write(Network(1, 1), path); }),
            path.string() +
                ": can't be written: No such file or directory; check that its folder exists and may be written");
}

TEST(Touchstone, AFolderWithoutPermissionIsTold) {
  FolderOfFiles const folder;
  auto const path = folder.Path() / "a.s1p";
  std::filesystem::permissions(folder.Path(), std::filesystem::perms(0555));
  WithoutPrivileges const asNobody;
  EXPECT_EQ(ErrorOfWriting([&] { Write(Network(1, 1), path); }),
            path.string() + ": can't be written: Permission denied; check that its folder exists and may be written");
}

TEST(Touchstone, AFolderInTheWayIsTold) {
  FolderOfFiles const folder;
  folder.Write("a.s1p/x", "");
  EXPECT_NE(ErrorOfWriting([&] { Write(Network(1, 1), folder.Path() / "a.s1p"); }).find("can't be written"),
            std::string::npos);
  EXPECT_EQ(folder.FileCount(), 1u);
}

/** No file may grow beyond a limit: what a full disk looks like. */
class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) : m_Handler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &m_Before);
    rlimit const limited{bytes, m_Before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &m_Before);
    std::signal(SIGXFSZ, m_Handler);
  }

private:
  rlimit m_Before{};
  void (*m_Handler)(int);
};

TEST(Touchstone, AFullDiskIsToldAndLeavesTheOldFile) {
  FolderOfFiles const folder;
  auto const path = folder.Write("a.s4p", "old");
  Network const network(4, 2000);
  std::string error;
  {
    FileSizeLimit const limit(4096);
    error = ErrorOfWriting([&] { Write(network, path); });
  }
  EXPECT_EQ(error, path.string() + ": can't be written: File too large; make room on the disk");
  EXPECT_EQ(Content(path), "old");
  EXPECT_EQ(folder.FileCount(), 1u);
}

} // namespace
