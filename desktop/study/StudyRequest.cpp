#include "desktop/study/StudyRequest.h"

#include "CoreInterfaces/desktop/IKitDesktop.h"
#include "basekit/id/Id.h"
#include "basekit/message/MessageManager.h"
#include "basekit/message/MessageQueueRestorer.h"
#include "desktop/Error.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductSolutionManager.h"
#include "desktop/project/Session.h"
#include "desktop/solve/SolveQueue.h"
#include "desktop/solve/StopRequests.h"
#include "desktop/study/Study.h"
#include "solutionmanager/address/SolutionVariationKey.h"
#include "solutionmanager/model/BaseSimulationSetup.h"

#include <algorithm>
#include <unordered_map>

namespace desktop {
namespace {

// IDs are issued for many points at a time, since each issue is a write.
constexpr std::size_t kPiece = 16 * 1024;
constexpr std::size_t kMostNotes = 10;

// A point that is valid already is told to the user by a message; here it is counted instead.
int Request(BaseSimulationSetup const & setup, DesignInstance & instance) {
  IKitDesktop * const kit = GetIKitDesktop();
  MessageQueueRestorer const restorer(kit ? &kit->GetMessageManager() : nullptr);
  return setup.StartSingleSimulation(&instance, 0, 0, nullptr);
}

// All solutions of the setup, valid or not: what stands in the library gives way to what is solved.
int RequestAnew(BaseSimulationSetup const & setup, DesignInstance & instance, SolveQueue & queue) {
  std::vector<long> solutionIDs;
  for (auto const & [id, solution] : setup.GetSolutions())
    solutionIDs.push_back(id);
  std::vector<SolutionVariationKey> keys;
  setup.GetSolutionVariationKeysForSolve(keys, instance.GetVariationKey(), &solutionIDs);
  long const noParent = id::invalidID;
  return queue.SubmitSolve(&instance, keys, nullptr, nullptr, &noParent, 0, 0, AString(), 0, 0) ? kSolveSubmitted
                                                                                                : kSolveRefused;
}

class Requester {
public:
  Requester(Session & session, std::vector<BaseSimulationSetup *> const & setups, Study const & study,
            SolveQueue * anew)
      : m_session(session), m_setups(setups), m_study(study), m_anew(anew) {}

  RequestedPoints RequestAll() {
    for (std::size_t first = 0; first < m_study.Size() && !m_requested.isStopped; first += kPiece)
      RequestPiece(first, std::min(m_study.Size() - first, kPiece));
    return std::move(m_requested);
  }

private:
  void RequestPiece(std::size_t first, std::size_t count) {
    std::vector<AString> variations;
    variations.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
      variations.push_back(m_session.GetDesign().GetVariation(m_study.At(first + i)));
    m_session.GetManager().IssueVariationIDs(variations);
    for (std::size_t i = 0; i < count; ++i) {
      // Very many points take minutes to ask for.
      if (StopRequests::Count() > 0) {
        m_requested.isStopped = true;
        return;
      }
      // Equal points have one ID, however they are written.
      auto const [known, isNew] = m_indexes.emplace(m_session.GetManager().GetVariationID(variations[i]), first + i);
      if (isNew)
        RequestPoint(m_session.GetDesign().InstanceFor(variations[i]));
      else
        NoteRepeated(first + i, known->second);
    }
  }

  void RequestPoint(DesignInstance & instance) {
    for (BaseSimulationSetup const * setup : m_setups) {
      ++m_requested.points;
      int const answer = m_anew ? RequestAnew(*setup, instance, *m_anew) : Request(*setup, instance);
      if (answer == kNothingToSolve)
        ++m_requested.alreadyValid;
      else if (answer == kSolveRefused)
        throw Error(ErrorKind::kFailed, setup->GetName() + L" at " + instance.GetVariationKey() +
                                            L": can't be queued; see what was told before");
    }
  }

  void NoteRepeated(std::size_t index, std::size_t earlier) {
    m_requested.repeated += m_setups.size();
    AString const place = m_study.PlaceOf(index);
    if (!place.empty() && m_requested.notes.size() < kMostNotes)
      m_requested.notes.push_back(place + L": is the same point as " + m_study.PlaceOf(earlier) + L"; it counts once");
  }

  Session & m_session;
  std::vector<BaseSimulationSetup *> const & m_setups;
  Study const & m_study;
  SolveQueue * m_anew;
  std::unordered_map<long, std::size_t> m_indexes; ///< by variation ID, the first point of each
  RequestedPoints m_requested;
};

} // namespace

void CheckStudySize(Study const & study, std::size_t setups) {
  if (setups > 0 && study.Size() > kMostStudyPoints / setups)
    throw Error(ErrorKind::kUsage, L"the study " +
                                       TooManyPoints(static_cast<double>(study.Size()) * static_cast<double>(setups)) +
                                       L", in all setups together; "
                                       L"choose one with --setup, or take larger steps");
}

RequestedPoints RequestStudy(Session & session, std::vector<BaseSimulationSetup *> const & setups, Study const & study,
                             SolveQueue * anew) {
  CheckStudySize(study, setups.size());
  return Requester(session, setups, study, anew).RequestAll();
}

} // namespace desktop
