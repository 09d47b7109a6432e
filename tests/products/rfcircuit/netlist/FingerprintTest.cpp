#include "products/rfcircuit/engine/netlist/Netlist.h"

#include <gtest/gtest.h>

namespace {

std::uint64_t Of(std::string const & lines) { return rf::ReadNetlistText("title\n" + lines, "x.cir").Fingerprint(); }

char const * const kCircuit = ".param r=50 k={2*r}\nV1 a 0 dc 0 ac 1 portnum 1 z0 50\nR1 a 0 {k}\n.sp lin 3 1 2\n";

} // namespace

TEST(NetlistFingerprint, IsTheSameForAnotherValueSweepTitleOrRemark) {
  EXPECT_EQ(Of(kCircuit), Of(".param r=75 k={2*r} ; ohms\n* a remark\nV1 a 0 dc 0\n+ ac 1  portnum 1 z0 50\n"
                             "R1 a 0 {k}\n.sp list 1\n.options reltol=1\n"));
  EXPECT_EQ(rf::ReadNetlistText("one\nR1 a 0 1\n", "x.cir").Fingerprint(),
            rf::ReadNetlistText("two\nR1 a 0 1\n", "y.cir").Fingerprint());
}

TEST(NetlistFingerprint, DiffersWithWhateverChangesTheCircuit) {
  for (char const * const other :
       {".param r=50 k={3*r}\nV1 a 0 dc 0 ac 1 portnum 1 z0 50\nR1 a 0 {k}\n.sp lin 3 1 2\n",
        ".param q=50 k={2*q}\nV1 a 0 dc 0 ac 1 portnum 1 z0 50\nR1 a 0 {k}\n.sp lin 3 1 2\n",
        ".param r=50 k=100\nV1 a 0 dc 0 ac 1 portnum 1 z0 50\nR1 a 0 {k}\n.sp lin 3 1 2\n",
        ".param r=50 k={2*r}\nV1 a 0 dc 0 ac 1 portnum 1 z0 75\nR1 a 0 {k}\n.sp lin 3 1 2\n",
        ".param r=50 k={2*r}\nV1 a 0 dc 0 ac 1 portnum 1 z0 50\nR1 a 0 {k}\nR2 a 0 {k}\n.sp lin 3 1 2\n"})
    EXPECT_NE(Of(kCircuit), Of(other)) << other;
  std::string const inside = ".subckt s a b x=1\nR1 a b {x}\n.ends\nR2 n 0 1\n";
  EXPECT_NE(Of(inside), Of(".subckt s a b x=2\nR1 a b {x}\n.ends\nR2 n 0 1\n"));
  EXPECT_NE(Of(inside), Of(".subckt s a b x=1\nR1 a b {x}\nR2 n 0 1\n.ends\n"));
  EXPECT_NE(Of(inside), Of(inside + ".global n\n"));
}
