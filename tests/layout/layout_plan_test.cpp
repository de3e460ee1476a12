#include "layout/layout_plan.h"

#include <gtest/gtest.h>

namespace {

LayoutControl OneLine(LayoutRect rect, int neededWidth, int neededHeight = 0) {
  return LayoutControl{LayoutKind::kOneLine, rect, neededWidth, neededHeight};
}

LayoutControl Wrapping(LayoutRect rect, int neededHeight) {
  return LayoutControl{LayoutKind::kWrapping, rect, 0, neededHeight};
}

LayoutControl Rule(LayoutRect rect) {
  return LayoutControl{LayoutKind::kRule, rect, 0, 0};
}

LayoutControl Fixed(LayoutRect rect) {
  return LayoutControl{LayoutKind::kFixed, rect, 0, 0};
}

TEST(LayoutPlanTest, TextsThatFitLeaveEveryControlWhereItIs) {
  std::vector<LayoutControl> controls{OneLine({10, 10, 200, 24}, 150),
                                      Wrapping({10, 30, 400, 60}, 28), Fixed({10, 70, 50, 90})};
  std::vector<LayoutRect> planned = PlanLayout(controls, 430, 10);
  for (size_t index = 0; index < controls.size(); ++index) {
    EXPECT_EQ(planned[index], controls[index].rect) << index;
  }
}

TEST(LayoutPlanTest, AWideningHeadingPushesItsRuleAndTheButtonBesideIt) {
  // heading | rule on one row; a button with a neighbour on the next row.
  std::vector<LayoutControl> controls{OneLine({10, 10, 90, 22}, 140), Rule({100, 15, 420, 17}),
                                      OneLine({10, 40, 110, 60}, 160),
                                      OneLine({120, 40, 200, 60}, 60), Fixed({10, 80, 60, 100})};
  std::vector<LayoutRect> planned = PlanLayout(controls, 430, 10);
  EXPECT_EQ(planned[0], (LayoutRect{10, 10, 150, 22}));
  EXPECT_EQ(planned[1], (LayoutRect{154, 15, 420, 17}));  // shorter, right end kept
  EXPECT_EQ(planned[2], (LayoutRect{10, 40, 170, 60}));
  EXPECT_EQ(planned[3], (LayoutRect{180, 40, 260, 60}));  // moved by the same 60
  EXPECT_EQ(planned[4], controls[4].rect);                // nothing below moves
}

TEST(LayoutPlanTest, GrowingLabelsMoveEverythingBelowByTheSameAmount) {
  std::vector<LayoutControl> controls{
      Wrapping({10, 10, 400, 40}, 52),                                   // 22 taller
      OneLine({10, 50, 200, 62}, 100), Wrapping({10, 70, 400, 80}, 30),  // 20 more
      Fixed({10, 200, 40, 230}), Fixed({300, 5, 320, 9})};  // above the first label: stays
  std::vector<LayoutRect> planned = PlanLayout(controls, 430, 10);
  EXPECT_EQ(planned[0], (LayoutRect{10, 10, 400, 62}));
  EXPECT_EQ(planned[1], (LayoutRect{10, 72, 200, 84}));
  EXPECT_EQ(planned[2], (LayoutRect{10, 92, 400, 122}));
  EXPECT_EQ(planned[3], (LayoutRect{10, 242, 40, 272}));
  EXPECT_EQ(planned[4], controls[4].rect);
}

TEST(LayoutPlanTest, TextTooLongForTheMarginIsCappedThereAndWrapsDownwards) {
  std::vector<LayoutControl> controls{OneLine({50, 10, 300, 24}, 600, 30),
                                      Fixed({50, 30, 100, 40})};
  std::vector<LayoutRect> planned = PlanLayout(controls, 430, 10);
  EXPECT_EQ(planned[0], (LayoutRect{50, 10, 420, 40}));
  EXPECT_EQ(planned[1], (LayoutRect{50, 46, 100, 56}));
}

TEST(LayoutPlanTest, MirroringReflectsAcrossTheClientWidth) {
  EXPECT_EQ(MirrorRect({10, 5, 110, 25}, 400), (LayoutRect{290, 5, 390, 25}));
}

}  // namespace
