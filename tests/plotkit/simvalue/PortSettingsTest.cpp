#include "plotkit/simvalue/PortSettings.h"

#include "basekit/io/CBlock.h"

#include <gtest/gtest.h>

#include <vector>

TEST(PortSettings, WhatWasNeverSetHasNoValueAndReadsAsZero) {
  PortSettings const port(L"P1");
  EXPECT_EQ(port.GetItemName(), L"P1");
  EXPECT_FALSE(port.GetDeembeddingDist().HasValue());
  EXPECT_EQ(port.GetDeembeddingDist().GetValue(), 0.0);
  EXPECT_FALSE(port.GetTermination(true).HasValue());
  EXPECT_EQ(port.GetTermination(true).GetValue(), AComplex<double>());
  EXPECT_EQ(port.GetDeembeddingDist().GetUnits(), Units::kNoUnits);
}

TEST(PortSettings, TheTerminationIsTheSolvedOneOrTheOneAskedFor) {
  PortSettings port(L"P1");
  port.SetImpedance({50.0, 1.0});
  port.SetRenormalization({75.0, 0.0});
  EXPECT_EQ(port.GetTermination(false).GetValue(), (AComplex<double>(50.0, 1.0)));
  EXPECT_EQ(port.GetTermination(true).GetValue(), (AComplex<double>(75.0, 0.0)));
  port.ClearRenormalization();
  EXPECT_FALSE(port.GetTermination(true).HasValue());
}

TEST(PortSettings, ABlockGivesBackEqualSettings) {
  PortSettings port(L"Port \"1\"");
  port.SetDeembeddingDist(-1.5e-3);
  port.SetImpedance({50.0, -2.25});
  io::CBlock block(port.GetItemName());
  ASSERT_TRUE(port.Write(block));
  PortSettings read(block.Name());
  read.SetRenormalization({1.0, 1.0});
  EXPECT_EQ(read.Read(block), io::kNoError);
  EXPECT_TRUE(read == port);
}

TEST(PortSettings, AnImpedanceWithoutTwoNumbersIsReported) {
  io::CBlock block(L"P1");
  io::CBlock_func impedance(L"Impedance");
  impedance << 50.0;
  block << impedance;
  PortSettings read(L"P1");
  EXPECT_EQ(read.Read(block), io::kBadContent);
  EXPECT_FALSE(read.GetTermination(false).HasValue());
}

TEST(PortSettings, AreKeptByValue) {
  std::vector<PortSettings> ports(2, PortSettings(L"P1"));
  ports[1].SetDeembeddingDist(1e-3);
  ports[0] = ports[1];
  EXPECT_TRUE(ports[0] == ports[1]);
}
