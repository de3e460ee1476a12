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

LayoutControl RightAligned(LayoutRect rect, int neededWidth) {
  LayoutControl control = OneLine(rect, neededWidth);
  control.rightAligned = true;
  return control;
}

LayoutControl InBottomBlock(LayoutControl control) {
  control.bottomBlock = true;
  return control;
}

std::vector<LayoutRect> Plan(const std::vector<LayoutControl>& controls) {
  return PlanLayout(controls, 430, 300, 10).rects;
}

TEST(LayoutPlanTest, TextsThatFitLeaveEveryControlWhereItIs) {
  std::vector<LayoutControl> controls{OneLine({10, 10, 200, 24}, 150),
                                      Wrapping({10, 30, 400, 60}, 28), Fixed({10, 70, 50, 90})};
  std::vector<LayoutRect> planned = Plan(controls);
  for (size_t index = 0; index < controls.size(); ++index) {
    EXPECT_EQ(planned[index], controls[index].rect) << index;
  }
}

TEST(LayoutPlanTest, AWideningHeadingPushesItsRuleAndTheButtonBesideIt) {
  // heading | rule on one row; a button with a neighbour on the next row.
  std::vector<LayoutControl> controls{OneLine({10, 10, 90, 22}, 140), Rule({100, 15, 420, 17}),
                                      OneLine({10, 40, 110, 60}, 160),
                                      OneLine({120, 40, 200, 60}, 60), Fixed({10, 80, 60, 100})};
  std::vector<LayoutRect> planned = Plan(controls);
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
  std::vector<LayoutRect> planned = Plan(controls);
  EXPECT_EQ(planned[0], (LayoutRect{10, 10, 400, 62}));
  EXPECT_EQ(planned[1], (LayoutRect{10, 72, 200, 84}));
  EXPECT_EQ(planned[2], (LayoutRect{10, 92, 400, 122}));
  EXPECT_EQ(planned[3], (LayoutRect{10, 242, 40, 272}));
  EXPECT_EQ(planned[4], controls[4].rect);
}

TEST(LayoutPlanTest, TextTooLongForTheMarginIsCappedThereAndWrapsDownwards) {
  std::vector<LayoutControl> controls{OneLine({50, 10, 300, 24}, 600, 30),
                                      Fixed({50, 30, 100, 40})};
  std::vector<LayoutRect> planned = Plan(controls);
  EXPECT_EQ(planned[0], (LayoutRect{50, 10, 420, 40}));
  EXPECT_EQ(planned[1], (LayoutRect{50, 46, 100, 56}));
}

TEST(LayoutPlanTest, RightAlignedLabelsOfAColumnWidenTogetherAndKeepTheirValuesAligned) {
  std::vector<LayoutControl> controls{
      RightAligned({10, 10, 100, 22}, 140), OneLine({105, 10, 300, 22}, 60),
      RightAligned({10, 25, 100, 37}, 80), OneLine({105, 25, 300, 37}, 60)};
  std::vector<LayoutRect> planned = Plan(controls);
  EXPECT_EQ(planned[0], (LayoutRect{10, 10, 150, 22}));
  EXPECT_EQ(planned[2], (LayoutRect{70, 25, 150, 37}));  // as wide as its own text
  EXPECT_EQ(planned[1], (LayoutRect{155, 10, 350, 22}));
  EXPECT_EQ(planned[3], (LayoutRect{155, 25, 350, 37}));
}

TEST(LayoutPlanTest, OverlapsOfTheTemplateAreCleared) {
  // A heading whose rule starts inside it; a one-line label reaching into the button below.
  LayoutControl label = OneLine({10, 40, 420, 60}, 200);
  label.neededHeight = 13;
  std::vector<LayoutControl> controls{OneLine({10, 10, 130, 22}, 100), Rule({90, 15, 420, 17}),
                                      label, OneLine({10, 58, 200, 80}, 100)};
  std::vector<LayoutRect> planned = Plan(controls);
  EXPECT_EQ(planned[0], (LayoutRect{10, 10, 110, 22}));
  EXPECT_EQ(planned[1], (LayoutRect{114, 15, 420, 17}));
  EXPECT_EQ(planned[2], (LayoutRect{10, 40, 420, 58}));
  EXPECT_EQ(planned[3], controls[3].rect);
}

TEST(LayoutPlanTest, ButtonsInARowMakeRoomWithoutCrossingTheMargins) {
  // Pushed past the margin, the second button starts a row of its own; the list below moves.
  std::vector<LayoutControl> row{OneLine({10, 10, 200, 30}, 330), OneLine({210, 10, 400, 30}, 150),
                                 Fixed({10, 40, 420, 90})};
  std::vector<LayoutRect> planned = Plan(row);
  EXPECT_EQ(planned[0], (LayoutRect{10, 10, 340, 30}));
  EXPECT_EQ(planned[1], (LayoutRect{10, 36, 200, 56}));
  EXPECT_EQ(planned[2], (LayoutRect{10, 66, 420, 116}));

  // A button that ends at the right margin widens to the left and pushes its neighbour.
  std::vector<LayoutControl> closing{OneLine({250, 10, 330, 30}, 60),
                                     OneLine({340, 10, 420, 30}, 150)};
  planned = Plan(closing);
  EXPECT_EQ(planned[1], (LayoutRect{270, 10, 420, 30}));
  EXPECT_EQ(planned[0], (LayoutRect{184, 10, 264, 30}));

  // A field beside a widened label gets narrower at the margin rather than moving away.
  std::vector<LayoutControl> field{RightAligned({10, 10, 60, 22}, 90), Fixed({65, 8, 420, 24})};
  planned = Plan(field);
  EXPECT_EQ(planned[1], (LayoutRect{105, 8, 420, 24}));
}

TEST(LayoutPlanTest, TheBottomBlockMovesOnlyWhenTheControlsAboveReachIt) {
  struct Case {
    int labelNeeds;  // wrapped height of the label that ends at 100
    int blockTop;    // where the block's first control ends up
    int clientHeight;
  };
  const Case cases[] = {
      {60, 200, 300},   // the texts fit: nothing moves
      {100, 200, 300},  // the button moves down into the free room above the block
      {150, 230, 300},  // the button now ends at 220: the block keeps a margin below it
      {230, 310, 380},  // the block goes past the bottom: the client must grow
  };
  for (const Case& expected : cases) {
    std::vector<LayoutControl> controls{
        Wrapping({10, 40, 420, 100}, expected.labelNeeds), OneLine({10, 110, 200, 130}, 100),
        InBottomBlock(Rule({10, 200, 420, 202})), InBottomBlock(Wrapping({40, 210, 420, 260}, 50))};
    LayoutPlan plan = PlanLayout(controls, 430, 300, 10);
    EXPECT_EQ(plan.rects[2].top, expected.blockTop) << expected.labelNeeds;
    EXPECT_EQ(plan.rects[3].top - plan.rects[2].top, 10) << "the block keeps its shape";
    EXPECT_EQ(plan.clientHeight, expected.clientHeight) << expected.labelNeeds;
  }
}

}  // namespace
