#include "tests/products/rfcircuit/RfSupport.h"

#include <fstream>
#include <iterator>
#include <sstream>

#include <unistd.h>

namespace rftest {

rf::Netlist Read(std::string const & lines) { return rf::ReadNetlistText("title\n" + lines, "test.cir"); }

rf::Circuit Build(std::string const & lines, rf::Overrides const & overrides) {
  return rf::Elaborate(Read(lines), overrides);
}

rf::SMatrix Solve(std::string const & lines, double frequency) {
  return rf::SParameterSolver(Build(lines)).At(frequency);
}

rf::SMatrix SolveTwoPort(std::string const & lines, double frequency) {
  return Solve(lines + "\nVin in 0 dc 0 ac 1 portnum 1 z0 50\nVout out 0 dc 0 ac 0 portnum 2 z0 50\n", frequency);
}

std::string ErrorOf(std::function<void()> const & action) {
  try {
    action();
  } catch (rf::NetlistError const & error) {
    return error.what();
  }
  ADD_FAILURE() << "no error was raised";
  return "";
}

std::string ErrorOfReading(std::string const & lines) {
  return ErrorOf([&] { Read(lines); });
}

std::string ErrorOfBuilding(std::string const & lines) {
  rf::Netlist const netlist = Read(lines);
  return ErrorOf([&] { rf::Elaborate(netlist); });
}

void ExpectNear(Complex actual, Complex expected, double tolerance) {
  EXPECT_LE(std::abs(actual - expected), tolerance) << "actual " << actual << ", expected " << expected;
}

std::string const Text(int number) { return std::to_string(number); }
std::string const Text(double number) { return std::to_string(number); }

std::filesystem::path ExampleFile(std::string const & relative) {
  return std::filesystem::path(SOURCE_FOLDER) / "examples" / relative;
}

std::filesystem::path FolderOfFiles::Write(std::string const & name, std::string const & content) const {
  std::filesystem::create_directories((Path() / name).parent_path());
  std::ofstream(Path() / name, std::ios::binary) << content;
  return Path() / name;
}

std::size_t FolderOfFiles::FileCount() const {
  auto const files = std::filesystem::directory_iterator(Path());
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

namespace {
constexpr uid_t NOBODY = 65534;
}

WithoutPrivileges::WithoutPrivileges() : m_WasSuperuser(geteuid() == 0) {
  if (m_WasSuperuser && seteuid(NOBODY) != 0)
    ADD_FAILURE() << "the privileges can't be dropped";
}

WithoutPrivileges::~WithoutPrivileges() {
  if (m_WasSuperuser && seteuid(0) != 0)
    ADD_FAILURE() << "the privileges can't be taken back";
}

std::string Content(std::filesystem::path const & path) {
  std::ifstream file(path, std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

} // namespace rftest
