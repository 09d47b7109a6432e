#include "tests/desktop/support/SessionFixture.h"

#include "basekit/io/CBlock.h"
#include "basekit/value/Variable.h"
#include "desktop/product/ProductRegistry.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

constexpr unsigned kNobody = 65534;

} // namespace

SessionTest::SessionTest() {
  desktop::ProductRegistry::Instance().Register(std::make_unique<FakeProduct>());
  Write("circuit.txt", "param C 1\nparam L 2\nsetup Sweep\nsetup Fine\ninclude part.txt\n");
  Write("part.txt", "a part\n");
}

AString SessionTest::PathOf(std::string const & name) const { return text::FromUtf8((m_folder / name).string()); }

std::string SessionTest::Read(std::string const & name) const {
  std::ifstream stream(m_folder / name, std::ios::binary);
  std::ostringstream content;
  content << stream.rdbuf();
  return content.str();
}

void SessionTest::Write(std::string const & name, std::string const & content) const {
  std::ofstream(m_folder / name, std::ios::binary) << content;
}

bool SessionTest::Exists(std::string const & name) const { return std::filesystem::exists(m_folder / name); }

std::vector<std::string> SessionTest::Names() const {
  std::vector<std::string> names;
  for (auto const & entry : std::filesystem::recursive_directory_iterator(m_folder.Path()))
    names.push_back(entry.path().lexically_relative(m_folder.Path()).string());
  std::sort(names.begin(), names.end());
  return names;
}

std::unique_ptr<desktop::Session> SessionTest::Create() const {
  return desktop::Session::Create(ProjectPath(), PathOf("circuit.txt"), L"fake");
}

std::unique_ptr<desktop::Session> SessionTest::Open(Access access) const {
  return desktop::Session::Open(ProjectPath(), access);
}

BaseSolution & SessionTest::SolutionOf(desktop::Session & session, AString const & setup) {
  auto const * const found =
      dynamic_cast<BaseSimulationSetup *>(session.GetManager().GetISimulationSetup(setup, false, false));
  return *found->GetSolutions().begin()->second;
}

CStreamioLibrary::LibIOReturn SessionTest::Solve(desktop::Session & session, AString const & variation, double value) {
  return Solve(session, variation, std::vector<double>{value});
}

CStreamioLibrary::LibIOReturn SessionTest::Solve(desktop::Session & session, AString const & variation,
                                                 std::vector<double> const & values) {
  BaseSolution & solution = SolutionOf(session);
  io::CBlock_ptr<io::CBlock> const block(
      new io::CBlock(SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation, solution.GetID(),
                                          solution.GetVersionID())
                         .Pack()));
  io::CBlock_func data(L"Values");
  for (double const value : values)
    data << value;
  *block << data;
  io::CBlock batch;
  batch << block;
  auto const result = session.GetManager().SaveBlocks(batch);
  if (result == CStreamioLibrary::kLibSuccess)
    solution.GetVariationData(VariationIDIndex(variation, solution.GetVersionID(), &session.GetManager()), false);
  return result;
}

std::optional<double> SessionTest::ValueOf(desktop::Session & session, AString const & variation) {
  BaseSolution & solution = SolutionOf(session);
  auto const * const found = dynamic_cast<FakeVariation *>(
      solution.GetVariationData(VariationIDIndex(variation, solution.GetVersionID(), &session.GetManager()), false));
  return found && found->HasSolutionData() ? std::optional(found->values.front()) : std::nullopt;
}

AString SessionTest::TextOf(desktop::Session & session, AString const & variable) {
  return session.GetDesign().FindVariable(variable)->GetValueText();
}

void SessionTest::Crash(std::function<void(desktop::Session &)> const & work) const {
  pid_t const child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    try {
      auto const session = Open();
      work(*session);
      ::kill(::getpid(), SIGKILL);
    } catch (std::exception const & error) {
      std::fprintf(stderr, "%s\n", error.what());
    }
    ::_exit(1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status)) << "the child did not come to its end";
}

void SessionTest::WithoutRights(std::function<void()> const & work) const {
  if (::geteuid() != 0) {
    work(); // Nobody special: the modes of files hold.
    return;
  }
  ASSERT_EQ(::seteuid(kNobody), 0);
  try {
    work();
  } catch (...) {
    EXPECT_EQ(::seteuid(0), 0);
    throw;
  }
  ASSERT_EQ(::seteuid(0), 0);
}

SessionTest::Refusal SessionTest::RefusalOf(std::function<void()> const & work) {
  try {
    work();
  } catch (desktop::Error const & error) {
    return {error.Kind(), error.what()};
  }
  return {};
}

} // namespace support
