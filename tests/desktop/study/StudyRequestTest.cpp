#include "desktop/study/StudyRequest.h"

#include "desktop/product/ProductSolutionManager.h"
#include "desktop/solve/SolveQueue.h"
#include "desktop/solve/StopRequests.h"
#include "desktop/study/Study.h"
#include "desktop/study/VaryWord.h"
#include "tests/desktop/support/SessionFixture.h"

namespace {

using namespace desktop;

class StudyRequestTest : public support::SessionTest {
protected:
  StudyRequestTest() : m_session(Create()), m_queue(*m_session, SolveOptions()) {
    m_session->GetDesign().SetSimulationService(&m_queue);
  }
  ~StudyRequestTest() override {
    m_session->GetDesign().SetSimulationService(nullptr);
    StopRequests::Settle(StopRequests::Count());
  }
  RequestedPoints Request(AString const & word) {
    Study study;
    study.Add(ReadVaryWord(word).axis);
    study.ResolveNames(m_session->GetDesign());
    return RequestStudy(*m_session, {m_session->GetManager().GetSetups().begin()->second}, study, nullptr);
  }

  std::unique_ptr<Session> m_session;
  SolveQueue m_queue;
};

} // namespace

TEST_F(StudyRequestTest, QueuesEachPointOfTheStudy) {
  RequestedPoints const requested = Request(L"C=1:20:1");
  EXPECT_EQ(requested.points, 20u);
  EXPECT_FALSE(requested.isStopped);
  EXPECT_EQ(m_queue.QueuedCount(), 20);
}

TEST_F(StudyRequestTest, ARequestToStopEndsTheQueueingToo) {
  SolveQueue::RequestStop();
  RequestedPoints const requested = Request(L"C=1:2000:1");
  EXPECT_TRUE(requested.isStopped);
  EXPECT_EQ(requested.points, 0u);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
}

TEST_F(StudyRequestTest, MorePointsThanCanBeHeldAreRefusedBeforeAnyIsQueued) {
  EXPECT_EQ(RefusalOf([&] { Request(L"C=1:2000001:1"); }).kind, ErrorKind::kUsage);
  EXPECT_EQ(m_queue.QueuedCount(), 0);
}
