// Snapshots: what they notice, what they share, and what they bring back.
#include "workspace/snapshot.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "support/support.h"

namespace {

constexpr int kPoints = 700;

class Snapshots : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    ws.npts(SlotInput) = ws.npts(SlotNet) = kPoints;
    for (int i = 1; i <= kPoints; ++i) {
      ws.xval(AxisTth, SlotInput, i) = 10 + 0.02f * static_cast<float>(i);
      ws.yval(SlotInput, i) = ws.yval(SlotNet, i) = static_cast<float>(i % 17);
    }
    ComputeXAxes();
  }
};

TEST_F(Snapshots, NoticeEveryChange) {
  void (*const changes[])() = {
      [] { ws.yval(SlotInput, kPoints / 2) += 1; },
      [] { ws.yval(SlotInput, 1) = -0.0f; },  // whose sign is written
      [] { ws.yval(SlotScratch, MaxPoints) = 1; },
      [] { ws.yval(SlotBackground, kPoints + 1) = -0.0f; },
      [] { ws.xval(AxisQ, SlotNet, kPoints) = 1; },
      [] { ws.npts(SlotOverlay) = 3; },
      [] { ws.plotmask = 5; },
      [] { ws.cell(1) = 4; },
      [] { ws.smoothwindow = 7; },
      [] { ws.nstructure = 1; },
      [] { ws.structurescale = 1; },
  };
  ws.yval(SlotInput, 1) = 0;
  const Snapshot before = TakeSnapshot();
  for (const auto& change : changes) {
    const auto number = &change - changes;
    EXPECT_TRUE(IsAsIn(before)) << number;
    EXPECT_TRUE(TakeSnapshot(&before) == before) << number;
    change();
    EXPECT_FALSE(IsAsIn(before)) << number;
    EXPECT_FALSE(TakeSnapshot(&before) == before) << number;
    RestoreSnapshot(before);
  }
  ws.nstructure = 1;
  const Snapshot one = TakeSnapshot();
  ws.structureint(1, 1) = 50;
  EXPECT_FALSE(IsAsIn(one));
}

TEST_F(Snapshots, ShareWhatIsTheSame) {
  const Snapshot before = TakeSnapshot();
  for (int row = 0; row < 4; ++row)
    EXPECT_EQ(before.rows[SlotInput - 1][row], before.rows[SlotNet - 1][row]);
  ws.yval(SlotNet, 3) = 1000;
  const Snapshot after = TakeSnapshot(&before);
  for (int slot = 1; slot <= MaxSlots; ++slot)
    for (int row = 0; row < 4; ++row)
      EXPECT_EQ(after.rows[slot - 1][row] == before.rows[slot - 1][row],
                !(slot == SlotNet && row == 3));
}

TEST_F(Snapshots, BringBackThePointsAndNoOthers) {
  ws.yval(SlotInput, kPoints + 200) = 5;  // behind the last point
  const Snapshot before = TakeSnapshot();
  ws.yval(SlotInput, kPoints + 200) = 6;
  ws.yval(SlotInput, MaxPoints) = 7;
  ws.xval(AxisD, SlotNet, 2) = 8;
  RestoreSnapshot(before);
  EXPECT_EQ(ws.yval(SlotInput, kPoints + 200), 5);
  EXPECT_EQ(ws.yval(SlotInput, MaxPoints), 0);
  EXPECT_EQ(ws.xval(AxisD, SlotNet, 2), ws.xval(AxisD, SlotInput, 2));
}

TEST_F(Snapshots, CountsEndWithTheLastThatIsNotZero) {
  const std::vector<float> empty(MaxPoints);
  ClearCounts(SlotRefined);
  EXPECT_EQ(CountsEnd(SlotRefined), 0);
  for (const int place : {1, 500, 501, 19500, 19501, MaxPoints})
    for (const float value : {1.0f, -3.0f, -0.0f, NAN}) {
      ws.yval(SlotRefined, place) = value;
      EXPECT_EQ(CountsEnd(SlotRefined), place) << value;
      ClearCounts(SlotRefined);
      EXPECT_EQ(
          std::memcmp(ws.yval.row(SlotRefined).data(), empty.data(), MaxPoints * sizeof(float)), 0);
    }
}

}  // namespace
