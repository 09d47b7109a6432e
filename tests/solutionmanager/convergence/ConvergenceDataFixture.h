#pragma once

#include "basekit/io/CBlock.h"
#include "solutionmanager/convergence/ConvDef.h"
#include "solutionmanager/convergence/ConvValue.h"
#include "solutionmanager/convergence/ConvergenceData.h"
#include "solutionmanager/convergence/SetupConvDef.h"
#include "tests/support/AssertWatch.h"

#include <gtest/gtest.h>

namespace support {

/// A record of passes, with a list of two columns.
class ConvergenceDataTest : public testing::Test {
protected:
  static constexpr int kSingle = ConvergenceData::kSingleSet;

  ConvergenceDataTest() {
    setup.AddDef(&pass);
    setup.AddDef(&delta);
  }

  void Start(int index) {
    data.SetSetupDef(&setup, index);
    data.Initialize(L"10", L"0.02", L"Max delta", L"Pass", L"2", true, L"Passes", index);
  }

  void AddPass(int number, double value, int index) {
    ConvValues row;
    row.AddValue(new IntConvValue(&pass, number));
    row.AddValue(new DoubleConvValue(&delta, value));
    data.AddData(&row, index);
    EXPECT_EQ(row.size(), 0) << "the columns own the values now";
  }

  void AddRowOf(ConvDef const & def, int number) {
    ConvValues row;
    row.AddValue(new IntConvValue(&def, number));
    data.AddData(&row, kSingle);
  }

  io::CBlock Written() const {
    io::CBlock block(L"Record");
    EXPECT_TRUE(data.Write(block));
    return block;
  }

  IntConvDef pass{L"Pass", L"n", false};
  DoubleConvDef delta{L"Max delta", L"d", true};
  SetupConvDef setup{L"Adaptive"};
  ConvergenceData data{L"Record"};
};

} // namespace support
