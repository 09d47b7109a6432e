// A desktop whose solutions keep files, for tests that kill it:
//
//     project_saver new PROJECT SOURCE       makes the project
//     project_saver work PROJECT FIRST LAST  for each round: points with files, a managed file, a save; tells each save
//     project_saver show PROJECT saved|work  what the saved state has, or the next session: round, points, files
//     project_saver discard PROJECT
#include "basekit/file/LongFileName.h"
#include "basekit/text/Utf8.h"
#include "basekit/value/Variable.h"
#include "desktop/KitDesktop.h"
#include "desktop/design/Design.h"
#include "desktop/product/ProductRegistry.h"
#include "desktop/project/Session.h"
#include "tests/desktop/support/FakeProduct.h"

#include <cstdio>
#include <fstream>
#include <iostream>

using desktop::Session;

namespace {

constexpr int kPoints = 6;

support::FakeSolution & SolutionOf(Session & session) {
  auto const * const setup =
      dynamic_cast<BaseSimulationSetup *>(session.GetManager().GetISimulationSetup(L"Sweep", false, false));
  return dynamic_cast<support::FakeSolution &>(*setup->GetSolutions().begin()->second);
}

AString VariationOf(int point) { return AString::Format(L"C=%d; L=2", point); }

void Require(bool isDone, char const * what) {
  if (!isDone)
    throw std::runtime_error(what);
}

void Solve(Session & session, AString const & variation, int round) {
  auto & solution = SolutionOf(session);
  io::CBlock_ptr<io::CBlock> const block(
      new io::CBlock(SolutionVariationKey(solution.GetBaseSimulationSetup().GetID(), variation, solution.GetID(),
                                          solution.GetVersionID())
                         .Pack()));
  io::CBlock_func data(L"Values");
  data << static_cast<double>(round);
  *block << data;
  io::CBlock batch;
  batch << block;
  Require(session.GetManager().SaveBlocks(batch) == 0, "a point can't be stored");
  solution.GetVariationData(VariationIDIndex(variation, solution.GetVersionID(), &session.GetManager()), false);
  solution.stores.Store(variation, std::to_string(round));
}

// All points change with each round, and one point comes and goes.
void Work(Session & session, int round) {
  session.SetVariables({{L"L", AString::Format(L"%d", round)}});
  for (int point = 0; point < kPoints; ++point)
    Solve(session, VariationOf(point), round);
  if (round % 2 == 0)
    Solve(session, VariationOf(kPoints), round);
  else
    for (CMirroredDataMap * const store : SolutionOf(session).stores.All())
      store->DiscardMirroredData(VariationOf(kPoints));
  AString name;
  Require(session.GetManager().CreateManagedFile(name, L"notes", L"txt"), "no managed file");
  AString const path = session.GetManager().GetFullPathForManagedFile(L"notes", name).FilePath();
  std::ofstream(text::ToUtf8(path)) << round;
  session.Autosave();
}

void Show(Session & session) {
  auto & solution = SolutionOf(session);
  std::cout << "unsaved " << session.HasUnsavedChanges() << '\n';
  std::cout << "design " << text::ToUtf8(session.GetDesign().FindVariable(L"L")->GetValueText()) << '\n';
  for (int point = 0; point <= kPoints; ++point) {
    auto const * const found = dynamic_cast<support::FakeVariation *>(solution.GetVariationData(
        VariationIDIndex(VariationOf(point), solution.GetVersionID(), &session.GetManager()), false));
    std::cout << "point " << point << ' '
              << (found && found->HasSolutionData() ? std::to_string(static_cast<int>(found->values.front())) : "none")
              << " file " << solution.stores.ContentOf(VariationOf(point)) << '\n';
  }
}

int Run(std::vector<std::string> const & words) {
  AString const project = text::FromUtf8(words.at(1));
  if (words[0] == "new")
    Session::Create(project, text::FromUtf8(words.at(2)), L"fake");
  else if (words[0] == "show")
    Show(*Session::Open(project, words.at(2) == "saved" ? Session::Access::kReadOnly : Session::Access::kWrite));
  else if (words[0] == "discard")
    Session::Open(project, Session::Access::kWrite, Session::LeftWork::kDiscard);
  else {
    auto const session = Session::Open(project, Session::Access::kWrite);
    for (int round = std::stoi(words.at(2)); round <= std::stoi(words.at(3)); ++round) {
      Work(*session, round);
      std::cout << "ready " << round << std::endl;
      session->Save();
      std::cout << "saved " << round << std::endl;
    }
  }
  return 0;
}

} // namespace

int main(int argc, char ** argv) {
  desktop::ProductRegistry::Instance().Register(std::make_unique<support::FakeProduct>());
  try {
    return Run({argv + 1, argv + argc});
  } catch (std::exception const & error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
