// What a manager offers other components across transfer connections: nothing by itself, and the newer calls of a
// product that knows the older ones alone.
#include "basekit/io/CBlock.h"
#include "basekit/io/CNamed_value_manip.h"
#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"
#include "tests/solutionmanager/support/TestProduct.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

AString const kAnswer(L"Answer");

/// What one of the four older operations was called with.
struct Call {
  AString operation;
  std::vector<AString> texts;
  IDesignInstance * instance = nullptr;
  io::CBlock const * in = nullptr;
  io::CBlock * out = nullptr;
  bool * flag = nullptr;
};

/// Overrides the older operations and answers as it is told.
class OlderProduct : public BaseSolutionManager {
public:
  using BaseSolutionManager::BaseSolutionManager;

  bool RetrieveTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                            AString const & type, io::CBlock const & in, io::CBlock & out, bool & flag) const override {
    return Note({L"retrieve", {provider, consumer, type}, instance, &in, &out, &flag});
  }
  bool OnRefreshTransferData(AString const & provider, AString const & consumer, IDesignInstance * instance,
                             AString const & type, io::CBlock const & in, io::CBlock & out, bool & flag) override {
    return Note({L"refresh", {provider, consumer, type}, instance, &in, &out, &flag});
  }
  bool OnAcquireTransferDataConnection(AString const & consumer, IDesignInstance * instance, AString const & type,
                                       io::CBlock const & in, io::CBlock & out, bool & flag) override {
    return Note({L"acquire", {consumer, type}, instance, &in, &out, &flag});
  }
  bool OnReleaseTransferDataConnection(AString const & consumer, IDesignInstance * instance, AString const & type,
                                       io::CBlock const & in, io::CBlock & out, bool & flag) override {
    return Note({L"release", {consumer, type}, instance, &in, &out, &flag});
  }

  mutable std::vector<Call> calls;
  bool answer = true;

private:
  bool Note(Call const & call) const {
    calls.push_back(call);
    *call.out << io::named(kAnswer, call.operation);
    *call.flag = !*call.flag;
    return answer;
  }
};

/// One that tells connections of one kind apart by their GUID.
class NewerProduct : public OlderProduct {
public:
  using OlderProduct::OlderProduct;
  bool OnAcquireTransferDataConnection2(AString const &, IDesignInstance *,
                                        HubTransferConnectionIdentifier const & connection, io::CBlock const &,
                                        io::CBlock &, bool &) override {
    guids.push_back(connection.GetGuid());
    return true;
  }

  std::vector<AString> guids;
};

class TransferDataTest : public testing::Test {
protected:
  TransferDataTest() : m_design(AString(m_folder.Path().wstring())) {}

  /// The one call that reached the product had all of these arguments, themselves and not copies.
  void ExpectCall(OlderProduct const & product, AString const & operation, std::vector<AString> const & texts) {
    ASSERT_EQ(product.calls.size(), 1u);
    Call const & call = product.calls.front();
    EXPECT_EQ(call.operation, operation);
    EXPECT_EQ(call.texts, texts);
    EXPECT_EQ(call.instance, m_instance);
    EXPECT_EQ(call.in, &m_in);
    EXPECT_EQ(call.out, &m_out);
    EXPECT_EQ(call.flag, &m_flag);
    AString answer;
    m_out >> io::named(kAnswer, answer);
    EXPECT_EQ(answer, operation);
    EXPECT_TRUE(m_flag);
  }

  support::TemporaryFolder m_folder;
  support::TestKitDesktop m_desktop;
  support::TestDesign m_design;
  HubTransferConnectionIdentifier const m_connection{L"SParameters", L"{1-2-3}"};
  /// Never looked at on the way, so that any address will do.
  IDesignInstance * const m_instance = reinterpret_cast<IDesignInstance *>(&m_design);
  io::CBlock m_in{L"In"};
  io::CBlock m_out{L"Out"};
  bool m_flag = false;
};

} // namespace

TEST_F(TransferDataTest, AManagerByItselfOffersNoneOfTheSevenAndTouchesNothing) {
  BaseSolutionManager product(&m_design);
  ISolutionMgrForHubIntegration & hub = *product.GetISolutionMgrForHubIntegrationForEdit();
  EXPECT_EQ(product.GetISolutionMgrForHubIntegration(), &hub);
  for (bool const flag : {false, true}) {
    m_flag = flag;
    EXPECT_FALSE(hub.RetrieveTransferData(L"p", L"c", m_instance, L"t", m_in, m_out, m_flag));
    EXPECT_FALSE(hub.OnRefreshTransferData(L"p", L"c", m_instance, L"t", m_in, m_out, m_flag));
    EXPECT_FALSE(hub.OnAcquireTransferDataConnection(L"c", m_instance, L"t", m_in, m_out, m_flag));
    EXPECT_FALSE(hub.OnReleaseTransferDataConnection(L"c", m_instance, L"t", m_in, m_out, m_flag));
    EXPECT_FALSE(hub.OnRefreshTransferData2(L"p", L"c", m_instance, m_connection, m_in, m_out, m_flag));
    EXPECT_FALSE(hub.OnAcquireTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
    EXPECT_FALSE(hub.OnReleaseTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
    EXPECT_EQ(m_flag, flag);
  }
  EXPECT_TRUE(m_out.Empty());
}

TEST_F(TransferDataTest, ANewerRefreshReachesTheOlderOneByTheKindOfTransferAlone) {
  OlderProduct product(&m_design);
  EXPECT_TRUE(product.OnRefreshTransferData2(L"p", L"c", m_instance, m_connection, m_in, m_out, m_flag));
  ExpectCall(product, L"refresh", {L"p", L"c", L"SParameters"});
}

TEST_F(TransferDataTest, ANewerAcquireReachesTheOlderOneByTheKindOfTransferAlone) {
  OlderProduct product(&m_design);
  EXPECT_TRUE(product.OnAcquireTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
  ExpectCall(product, L"acquire", {L"c", L"SParameters"});
}

TEST_F(TransferDataTest, ANewerReleaseReachesTheOlderOneByTheKindOfTransferAlone) {
  OlderProduct product(&m_design);
  EXPECT_TRUE(product.OnReleaseTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
  ExpectCall(product, L"release", {L"c", L"SParameters"});
}

TEST_F(TransferDataTest, TheNewerCallsGiveTheOlderOnesAnswer) {
  OlderProduct product(&m_design);
  product.answer = false;
  EXPECT_FALSE(product.OnRefreshTransferData2(L"p", L"c", m_instance, m_connection, m_in, m_out, m_flag));
  EXPECT_FALSE(product.OnAcquireTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
  EXPECT_FALSE(product.OnReleaseTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
  EXPECT_EQ(product.calls.size(), 3u);
}

TEST_F(TransferDataTest, ItIsMeantThatConnectionsOfOneKindLookAlikeToTheOlderOperations) {
  OlderProduct product(&m_design);
  for (wchar_t const * const guid : {L"{1}", L"{2}", L""})
    product.OnAcquireTransferDataConnection2(L"c", nullptr, {L"SParameters", guid}, m_in, m_out, m_flag);
  ASSERT_EQ(product.calls.size(), 3u);
  for (Call const & call : product.calls)
    EXPECT_EQ(call.texts, (std::vector<AString>{L"c", L"SParameters"}));
}

TEST_F(TransferDataTest, AConnectionWithoutAKindReachesTheOlderOperationsWithAnEmptyText) {
  OlderProduct product(&m_design);
  product.OnReleaseTransferDataConnection2(L"c", nullptr, HubTransferConnectionIdentifier(), m_in, m_out, m_flag);
  ASSERT_EQ(product.calls.size(), 1u);
  EXPECT_EQ(product.calls.front().texts, (std::vector<AString>{L"c", L""}));
}

TEST_F(TransferDataTest, AProductThatOverridesANewerCallSeesTheGuidAndNoOlderCall) {
  NewerProduct product(&m_design);
  ISolutionMgrForHubIntegration & hub = *product.GetISolutionMgrForHubIntegrationForEdit();
  EXPECT_TRUE(hub.OnAcquireTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
  EXPECT_EQ(product.guids, (std::vector<AString>{L"{1-2-3}"}));
  EXPECT_TRUE(product.calls.empty());
  EXPECT_TRUE(hub.OnReleaseTransferDataConnection2(L"c", m_instance, m_connection, m_in, m_out, m_flag));
  ExpectCall(product, L"release", {L"c", L"SParameters"});
}

TEST_F(TransferDataTest, TheManagerKeepsNoRecordOfConnections) {
  OlderProduct product(&m_design);
  for (int i = 0; i < 2; ++i) {
    EXPECT_TRUE(product.OnAcquireTransferDataConnection2(L"c", nullptr, m_connection, m_in, m_out, m_flag));
    EXPECT_TRUE(product.OnReleaseTransferDataConnection2(L"c", nullptr, m_connection, m_in, m_out, m_flag));
    EXPECT_TRUE(product.OnReleaseTransferDataConnection2(L"c", nullptr, m_connection, m_in, m_out, m_flag));
    EXPECT_TRUE(product.OnRefreshTransferData2(L"p", L"c", nullptr, m_connection, m_in, m_out, m_flag));
  }
  EXPECT_EQ(product.calls.size(), 8u);
}
