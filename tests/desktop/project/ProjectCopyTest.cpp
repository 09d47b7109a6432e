#include "desktop/project/ProjectCopy.h"

#include "tests/desktop/support/SessionFixture.h"

using desktop::ProjectCopy;
using desktop::Session;

namespace {

/// A project that one session writes while it is copied.
class CopyBesideWriter : public support::SessionTest {
protected:
  CopyBesideWriter() : m_writer(Create()), m_project(ProjectPath()) { m_writer->Save(); }

  ProjectCopy Copy() const { return ProjectCopy(m_project, ProjectCopy::Of::kBesideWriter); }

  std::unique_ptr<Session> m_writer;
  desktop::Project m_project;
};

} // namespace

TEST_F(CopyBesideWriter, ShowsSavedAndUnsavedPoints) {
  Solve(*m_writer, L"C=1; L=2", 1);
  m_writer->Save();
  Solve(*m_writer, L"C=2; L=2", 2);
  ProjectCopy const copy = Copy();
  auto const session = Session::Open(copy.Path(), Access::kWrite);
  EXPECT_EQ(ValueOf(*session, L"C=1; L=2"), 1);
  EXPECT_EQ(ValueOf(*session, L"C=2; L=2"), 2);
}

TEST_F(CopyBesideWriter, HasWhatWasEditedAndNotSaved) {
  m_writer->SetVariables({{L"C", L"3"}});
  ProjectCopy const copy = Copy();
  EXPECT_EQ(TextOf(*Session::Open(copy.Path(), Access::kWrite), L"C"), L"3");
}

TEST_F(CopyBesideWriter, HoldsNobodyUpAndChangesNothing) {
  Solve(*m_writer, L"C=2; L=2", 2);
  auto const before = Names();
  {
    ProjectCopy const copy = Copy();
    auto const session = Session::Open(copy.Path(), Access::kWrite);
    session->Save();
    Solve(*m_writer, L"C=3; L=2", 3);
  }
  EXPECT_EQ(Names(), before);
  m_writer->Save();
  EXPECT_EQ(ValueOf(*m_writer, L"C=2; L=2"), 2);
  EXPECT_EQ(ValueOf(*m_writer, L"C=3; L=2"), 3);
}

TEST_F(CopyBesideWriter, IsNoneWhileASaveIsUnderWay) {
  Write("study.sproject.saving", "half a save");
  auto const refusal = RefusalOf([this] { Copy(); });
  EXPECT_EQ(refusal.kind, desktop::ErrorKind::kLocked);
}
