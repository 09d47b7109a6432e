#include "solutionmanager/outputvariables/PastedVariables.h"
#include "CoreInterfaces/reportkern/ITracePasteContext.h"
#include "basekit/id/LocalNameServer.h"
#include "tests/solutionmanager/extraction/TraceFixture.h"

#include "CoreInterfaces/ReportForward.h"

using support::AssertWatch;

namespace {

constexpr long kRenamedMessage = 24624;

class PasteContext final : public ITracePasteContext {
public:
  void OutputVariableNameChanged(AString const & oldName, AString const & newName) override {
    renamed.emplace_back(oldName, newName);
  }
  std::vector<std::pair<AString, AString>> renamed;
};

/// All arguments of the last message.
class LastMessage final : public IMessageListener {
public:
  explicit LastMessage(MessageManager & messages) : m_messages(messages) { messages.AddListener(this); }
  ~LastMessage() override { m_messages.RemoveListener(this); }
  void OnMessage(KelvroMessage const & message) override {
    arguments.assign(message.Arguments().GetArgs().begin(), message.Arguments().GetArgs().end());
  }
  std::vector<AString> arguments;

private:
  MessageManager & m_messages;
};

class PastedVariablesTest : public support::TraceTest {
protected:
  PastedVariablesTest() {
    AddVariable(L"Loss", L"dB(S21)");
    AddVariable(L"Wave", L"S21");
  }
  ~PastedVariablesTest() override { m_command.reset(); }

  /// What copying these variables gives.
  io::CBlock Copied(std::set<AString> const & names) {
    io::CBlock block(L"Traces");
    pastedvariables::Write(block, Manager(), names);
    return block;
  }
  bool Paste(io::CBlock const & block) {
    return Manager().ReadTraceInterpreterBlockForPaste(m_command.get(), &m_context, block);
  }
  std::size_t VariableCount() {
    std::vector<OutputVariable *> variables;
    Manager().GetOutputVariables(variables);
    return variables.size();
  }

  std::unique_ptr<KelvroCommand> m_command = std::make_unique<KelvroCommand>(L"Paste");
  PasteContext m_context;
};

} // namespace

TEST_F(PastedVariablesTest, CopyWritesAnEmptyBlockWhateverTheTracesHoldAsMeant) {
  io::CBlock block(L"Traces");
  auto const & definitions = *reinterpret_cast<TraceDefParams const *>(&block); // not looked at
  EXPECT_TRUE(Manager().WriteTraceInterpreterBlockForCopy(block, nullptr, definitions));
  ASSERT_NE(block.FindBlock(L"OutputVars"), nullptr);
  EXPECT_TRUE(block.FindBlock(L"OutputVars")->Empty());
  EXPECT_TRUE(Paste(block));
  EXPECT_EQ(VariableCount(), 2u);
}

TEST_F(PastedVariablesTest, ANameThatIsNoVariableIsLeftOutWithAnAssertion) {
  AssertWatch::Expect("0");
  io::CBlock const block = Copied({L"Loss", L"nobody"});
  ASSERT_EQ(block.FindBlock(L"OutputVars")->Size(), 1);
  EXPECT_EQ((*block.FindBlock(L"OutputVars")->begin())->Name(), L"Loss");
}

TEST_F(PastedVariablesTest, AVariableThatIsMissingIsAddedUndoably) {
  io::CBlock const block = Copied({L"Loss"});
  KelvroCommand deletion(L"Delete");
  ASSERT_TRUE(Manager().DeleteOutputVariable(Manager().FindOutputVariable(L"Loss"), &deletion));
  EXPECT_TRUE(Paste(block));
  ASSERT_NE(Manager().FindOutputVariable(L"Loss"), nullptr);
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss")->GetValueBaseText(), L"dB(S21)");
  m_command->Undo();
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss"), nullptr);
  m_command->Redo();
  EXPECT_NE(Manager().FindOutputVariable(L"Loss"), nullptr);
}

TEST_F(PastedVariablesTest, OfTheSameNameAndTypeTheExistingOneServes) {
  OutputVariable * const existing = Manager().FindOutputVariable(L"Loss");
  EXPECT_TRUE(Paste(Copied({L"Loss", L"Wave"})));
  EXPECT_EQ(VariableCount(), 2u);
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss"), existing);
  EXPECT_FALSE(m_command->HasDeltaStates());
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(PastedVariablesTest, ANewNameThatADesignVariableHasIsPassedOver) {
  Variable taken(L"Loss_1", L"3");
  m_design.ownVariables.variables.push_back(&taken);
  io::CBlock const block = Copied({L"Loss"});
  KelvroCommand edit(L"Edit");
  ASSERT_TRUE(Manager().EditOutputVariable(Manager().FindOutputVariable(L"Loss"), L"S11", &edit));
  AssertWatch::Expect("0");
  EXPECT_TRUE(Paste(block));
  EXPECT_EQ(m_context.renamed, (std::vector<std::pair<AString, AString>>{{L"Loss", L"Loss_2"}}));
  EXPECT_EQ(m_desktop.posted.size(), 1u) << "nobody is told of the names that were tried";
}

TEST_F(PastedVariablesTest, OfAnotherTypeItComesInUnderANewNameAndTheUserIsTold) {
  io::CBlock const block = Copied({L"Loss"});
  KelvroCommand edit(L"Edit");
  ASSERT_TRUE(Manager().EditOutputVariable(Manager().FindOutputVariable(L"Loss"), L"S11", &edit));
  AssertWatch::Expect("0");
  LastMessage const message(m_desktop.GetMessageManager());
  EXPECT_TRUE(Paste(block));
  EXPECT_EQ(message.arguments, (std::vector<AString>{L"complex number", L"Loss", L"real number", L"Loss_1"}))
      << "the type that is there, its name, the type that came, its new name";
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss")->GetValueBaseText(), L"S11");
  ASSERT_NE(Manager().FindOutputVariable(L"Loss_1"), nullptr);
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss_1")->GetValueBaseText(), L"dB(S21)");
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss_1")->GetName(), L"Loss_1");
  EXPECT_EQ(m_context.renamed, (std::vector<std::pair<AString, AString>>{{L"Loss", L"Loss_1"}}));
  ASSERT_EQ(m_desktop.posted.size(), 1u);
  EXPECT_EQ(m_desktop.posted.front().first, kRenamedMessage);
  EXPECT_EQ(m_desktop.severities.front(), KelvroMessage::kInfo);
  m_command->Undo();
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss_1"), nullptr);
}

TEST_F(PastedVariablesTest, WithoutTheBlockThereIsAnAssertionAndNoError) {
  AssertWatch::Expect("0");
  io::CBlock const block(L"Traces");
  EXPECT_TRUE(Paste(block));
  EXPECT_FALSE(block.Error(block.Found()) && !block.Found());
}

TEST_F(PastedVariablesTest, AFunctionThatIsNoVariableIsDropped) {
  io::CBlock block(L"Traces");
  ASSERT_TRUE(block.Unpack(L"Traces { OutputVars { a() b(7) c = 3 d(\"S21\", 1e300) } }"));
  EXPECT_TRUE(Paste(block));
  EXPECT_EQ(VariableCount(), 2u);
  for (std::string const & text : AssertWatch::Take())
    EXPECT_EQ(text, "0");
}

TEST_F(PastedVariablesTest, WithoutACommandNothingIsAddedAndNothingLost) {
  io::CBlock const block = Copied({L"Loss"});
  KelvroCommand deletion(L"Delete");
  ASSERT_TRUE(Manager().DeleteOutputVariable(Manager().FindOutputVariable(L"Loss"), &deletion));
  AssertWatch::Expect("0");
  EXPECT_TRUE(Manager().ReadTraceInterpreterBlockForPaste(nullptr, nullptr, block));
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss"), nullptr);
}

TEST_F(PastedVariablesTest, WhatCouldNotComeInUnderANewNameIsToldToNobody) {
  io::CBlock const block = Copied({L"Loss"});
  KelvroCommand edit(L"Edit");
  ASSERT_TRUE(Manager().EditOutputVariable(Manager().FindOutputVariable(L"Loss"), L"S11", &edit));
  EXPECT_TRUE(Manager().ReadTraceInterpreterBlockForPaste(nullptr, &m_context, block));
  EXPECT_EQ(AssertWatch::Take(), (std::vector<std::string>{"0", "0"})) << "the other type, and no command";
  EXPECT_EQ(Manager().FindOutputVariable(L"Loss_1"), nullptr);
  EXPECT_EQ(VariableCount(), 2u);
  EXPECT_TRUE(m_context.renamed.empty()) << "the traces would mean a variable that is not there";
  EXPECT_TRUE(m_desktop.posted.empty());
}

TEST_F(PastedVariablesTest, WithoutAContextAVariableComesInUnderANewNameAllTheSame) {
  io::CBlock const block = Copied({L"Loss"});
  KelvroCommand edit(L"Edit");
  ASSERT_TRUE(Manager().EditOutputVariable(Manager().FindOutputVariable(L"Loss"), L"S11", &edit));
  AssertWatch::Expect("0");
  EXPECT_TRUE(Manager().ReadTraceInterpreterBlockForPaste(m_command.get(), nullptr, block));
  EXPECT_NE(Manager().FindOutputVariable(L"Loss_1"), nullptr);
  EXPECT_EQ(m_desktop.posted.size(), 1u);
}

TEST_F(PastedVariablesTest, OfTwoFunctionsOfOneNameTheSecondMeetsTheFirst) {
  io::CBlock block(L"Traces");
  io::CBlock const real = Copied({L"Loss"});
  io::CBlock const complex = Copied({L"Wave"});
  io::CBlock_ptr<io::CBlock> const variables(new io::CBlock(L"OutputVars"));
  for (io::CBlock const * const copied : {&real, &complex}) {
    auto const & func = static_cast<io::CBlock_func const &>(**copied->FindBlock(L"OutputVars")->begin());
    io::CBlock_ptr<io::CBlock_func> const twin(new io::CBlock_func(func));
    twin->Name(L"Twin");
    *variables << twin;
  }
  block << variables;
  AssertWatch::Expect("0");
  EXPECT_TRUE(Paste(block));
  ASSERT_NE(Manager().FindOutputVariable(L"Twin"), nullptr);
  EXPECT_EQ(Manager().FindOutputVariable(L"Twin")->GetValueBaseText(), L"dB(S21)");
  ASSERT_NE(Manager().FindOutputVariable(L"Twin_1"), nullptr);
  EXPECT_EQ(Manager().FindOutputVariable(L"Twin_1")->GetValueBaseText(), L"S21");
  EXPECT_EQ(m_context.renamed, (std::vector<std::pair<AString, AString>>{{L"Twin", L"Twin_1"}}));
}

TEST_F(PastedVariablesTest, UnderTheReporterRewriteNothingIsPasted) {
  m_desktop.rewrite = true;
  EXPECT_FALSE(Paste(io::CBlock(L"Traces")));
  EXPECT_EQ(AssertWatch::Take(), std::vector<std::string>{"!\"Use OutputVariablesModule instead\""});
}

TEST(LocalNameServer, GivesOutNamesThatNobodyHas) {
  LocalNameServer names;
  names.AddName(L"Loss");
  names.AddName(L"LOSS_1");
  EXPECT_EQ(names.GetUniqueName(L"loss", LocalNameServer::kNumbered), L"loss_2");
  EXPECT_EQ(names.GetUniqueName(L"Gain", LocalNameServer::kKeepWhenFree), L"Gain");
  EXPECT_EQ(names.GetUniqueName(L"Gain", LocalNameServer::kKeepWhenFree), L"Gain_1");
  EXPECT_EQ(names.GetUniqueName(L"New", LocalNameServer::kNumbered), L"New_1");
  EXPECT_TRUE(names.IsTaken(L"NEW_1"));
  EXPECT_FALSE(names.IsTaken(L"New"));
}
