// What circuits hand to each other across connections.
#include "basekit/io/CBlock.h"
#include "basekit/text/Utf8.h"
#include "desktop/product/TransferredNetwork.h"
#include "products/rfcircuit/engine/touchstone/TouchstoneReader.h"
#include "solutionmanager/transfer/HubTransferConnectionIdentifier.h"
#include "tests/products/rfcircuit_product/RfProductTest.h"

using desktop::TransferredNetwork;

namespace {

std::string const kLowpass = "lowpass/lowpass.cir";
AString const kNominal = L"cscale=1; lscale=1";

class RfTransfers : public rftest::RfProductTest {
protected:
  RfTransfers() : m_setup(CreateSetupOf(kLowpass)), m_instance(m_design, kNominal) {}

  ISolutionMgrForHubIntegration & Hub() { return *Manager().GetISolutionMgrForHubIntegrationForEdit(); }
  bool Retrieve(AString const & setup, AString const & type = TransferredNetwork::kTransferType) {
    m_out = io::CBlock(L"Out");
    return Hub().RetrieveTransferData(setup, L"filter", &m_instance, type, m_in, m_out, m_flag);
  }
  bool Acquire(TransferredNetwork const & network) {
    io::CBlock in(L"In");
    network.Write(in);
    m_out = io::CBlock(L"Out");
    return Hub().OnAcquireTransferDataConnection2(L"filter", &m_instance, m_connection, in, m_out, m_flag);
  }
  bool Refresh(TransferredNetwork const & network, AString const & file) {
    io::CBlock in(L"In");
    network.Write(in);
    desktop::WriteTransferFile(in, file);
    m_out = io::CBlock(L"Out");
    return Hub().OnRefreshTransferData2(L"any", L"filter", &m_instance, m_connection, in, m_out, m_flag);
  }
  std::string Refusal() const { return text::ToUtf8(desktop::RefusalOf(m_out)); }

  rfcircuit::RfSetup & m_setup;
  support::TestInstance m_instance;
  HubTransferConnectionIdentifier const m_connection{TransferredNetwork::kTransferType, L"{1}"};
  io::CBlock m_in{L"In"};
  io::CBlock m_out{L"Out"};
  bool m_flag = false;
};

TransferredNetwork OnePort() { return {1, L".s1p", L"# Hz S RI R 50\n1e9 0.5 0\n"}; }

} // namespace

TEST_F(RfTransfers, ASolvedPointIsHandedOutWithEveryBit) {
  auto const & variation = Solve(m_setup, kLowpass, kNominal);
  rfcircuit::NetworkData const data = variation.GetData();
  EXPECT_TRUE(Retrieve(m_setup.GetName()));
  ASSERT_TRUE(m_flag) << Refusal();
  TransferredNetwork network;
  ASSERT_TRUE(network.Read(m_out));
  EXPECT_EQ(network.ports, 2);
  EXPECT_EQ(network.extension, L".s2p");
  auto const read = rf::ReadTouchstoneText(text::ToUtf8(network.text), "filter.s2p").network;
  ASSERT_EQ(read.frequencies, data.Frequencies());
  for (std::size_t i = 0; i < read.frequencies.size(); ++i)
    for (std::size_t row = 0; row < 2; ++row)
      for (std::size_t column = 0; column < 2; ++column)
        EXPECT_EQ(read.matrices[i](row, column), data.S(i, row, column));
}

TEST_F(RfTransfers, APointThatIsNotSolvedIsToldAndOffered) {
  EXPECT_TRUE(Retrieve(m_setup.GetName()));
  EXPECT_FALSE(m_flag);
  EXPECT_NE(Refusal().find("is not solved and valid at 'cscale=1; lscale=1'"), std::string::npos) << Refusal();
  EXPECT_TRUE(Retrieve(L"Other"));
  EXPECT_FALSE(m_flag);
  EXPECT_NE(Refusal().find("it has no setup 'Other'"), std::string::npos) << Refusal();
}

TEST_F(RfTransfers, OtherKindsOfTransferAreNotOffered) {
  m_flag = true;
  EXPECT_FALSE(Retrieve(m_setup.GetName(), L"Temperature"));
  EXPECT_FALSE(m_flag);
  HubTransferConnectionIdentifier const other(L"Temperature", L"{1}");
  EXPECT_FALSE(Hub().OnAcquireTransferDataConnection2(L"a", &m_instance, other, m_in, m_out, m_flag));
  EXPECT_FALSE(Hub().OnRefreshTransferData2(L"a", L"b", &m_instance, other, m_in, m_out, m_flag));
  EXPECT_FALSE(Hub().OnReleaseTransferDataConnection2(L"a", &m_instance, other, m_in, m_out, m_flag));
  EXPECT_TRUE(Hub().OnReleaseTransferDataConnection2(L"a", &m_instance, m_connection, m_in, m_out, m_flag));
  EXPECT_TRUE(m_flag);
}

TEST_F(RfTransfers, ANetworkIsTakenUnderTheNameOfItsConnection) {
  EXPECT_TRUE(Acquire(OnePort()));
  EXPECT_TRUE(m_flag);
  EXPECT_EQ(desktop::TransferFileOf(m_out), L"filter.s1p");
  EXPECT_TRUE(Refresh(OnePort(), L"filter.s1p"));
  EXPECT_TRUE(m_flag);
  EXPECT_EQ(desktop::TransferFileOf(m_out), L"filter.s1p");
}

TEST_F(RfTransfers, ANetworkThatItsFileCantHoldIsRefused) {
  EXPECT_TRUE(Refresh(OnePort(), L"filter.s2p"));
  EXPECT_FALSE(m_flag);
  EXPECT_EQ(Refusal(), "it has 1 port now, which 'filter.s2p' can't hold; disconnect, and connect anew");
}

TEST_F(RfTransfers, WhatIsNoNetworkIsRefused) {
  EXPECT_TRUE(Hub().OnAcquireTransferDataConnection2(L"a", &m_instance, m_connection, m_in, m_out, m_flag));
  EXPECT_FALSE(m_flag);
  EXPECT_EQ(Refusal(), "there is no network in what was handed over");
  EXPECT_TRUE(Acquire({1, L".s1p", L"nonsense"}));
  EXPECT_FALSE(m_flag);
  EXPECT_NE(Refusal().find("filter.s1p:1:"), std::string::npos) << Refusal();
  TransferredNetwork lying = OnePort();
  lying.ports = 3;
  EXPECT_TRUE(Acquire(lying));
  EXPECT_FALSE(m_flag);
  EXPECT_EQ(Refusal(), "it is told to have 3 ports, and its data has 1");
}
