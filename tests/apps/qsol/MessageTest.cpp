#include "apps/qsol/Message.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

class Message : public testing::Test {
protected:
  void SetUp() override {
    std::signal(SIGPIPE, SIG_IGN);
    ASSERT_EQ(::pipe(m_ends.data()), 0);
  }
  void TearDown() override {
    std::signal(SIGPIPE, SIG_DFL);
    for (int const end : m_ends)
      ::close(end);
  }
  std::string Written(std::string const & text) const {
    qsol::WriteMessage(m_ends[1], text);
    std::array<char, 256> bytes{};
    auto const size = ::read(m_ends[0], bytes.data(), bytes.size());
    return std::string(bytes.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
  }
  std::array<int, 2> m_ends{};
};

} // namespace

TEST_F(Message, IsOneLineWithoutControlCharacters) { EXPECT_EQ(Written("a\nb\x1b[1m\n\n"), "qsol: a b [1m\n"); }

TEST_F(Message, ThatCanNotBeWrittenIsLostWithoutHarm) {
  int const full = ::open("/dev/full", O_WRONLY);
  ASSERT_GE(full, 0);
  qsol::WriteMessage(full, "full");
  ::close(full);
  qsol::WriteMessage(full, "closed");
  ::close(m_ends[0]);
  qsol::WriteMessage(m_ends[1], "without a reader");
  EXPECT_EQ(::open("/dev/null", O_RDONLY), m_ends[0]) << "the number is free, nothing was opened";
}

TEST_F(Message, NeverEndsInAFileThatTookTheNumberOfAClosedStream) {
  EXPECT_EXIT(
      {
        ::close(STDERR_FILENO);
        qsol::KeepStandardDescriptors();
        int const opened = ::open("/dev/null", O_RDWR);
        bool const isRefused = ::write(STDERR_FILENO, "x", 1) == -1;
        ::_exit(opened > STDERR_FILENO && isRefused ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}
