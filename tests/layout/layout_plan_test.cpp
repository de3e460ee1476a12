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
  return LayoutControl{LayoutKind::kOneLine, rect, neededWidth, 0, true};
}

LayoutControl InBottomBlock(LayoutControl control) {
  control.bottomBlock = true;
  return control;
}

TEST(LayoutPlanTest, ControlsMakeRoomForTheirTextsAndPushTheirNeighbours) {
  struct Case {
    const char* what;
    std::vector<LayoutControl> controls;
    std::vector<LayoutRect> planned;
  };
  const Case cases[] = {
      {"texts that fit leave every control where it is",
       {OneLine({10, 10, 200, 24}, 150), Wrapping({10, 30, 400, 60}, 28), Fixed({10, 70, 50, 90})},
       {{10, 10, 200, 24}, {10, 30, 400, 60}, {10, 70, 50, 90}}},
      {"a widening heading shortens its rule (right end kept) and moves the button beside it by "
       "the same amount; nothing below moves",
       {OneLine({10, 10, 90, 22}, 140), Rule({100, 15, 420, 17}), OneLine({10, 40, 110, 60}, 160),
        OneLine({120, 40, 200, 60}, 60), Fixed({10, 80, 60, 100})},
       {{10, 10, 150, 22},
        {154, 15, 420, 17},
        {10, 40, 170, 60},
        {180, 40, 260, 60},
        {10, 80, 60, 100}}},
      {"growing labels (22, then 20 taller) move everything below by the same amount; what is "
       "above the first stays",
       {Wrapping({10, 10, 400, 40}, 52), OneLine({10, 50, 200, 62}, 100),
        Wrapping({10, 70, 400, 80}, 30), Fixed({10, 200, 40, 230}), Fixed({300, 5, 320, 9})},
       {{10, 10, 400, 62},
        {10, 72, 200, 84},
        {10, 92, 400, 122},
        {10, 242, 40, 272},
        {300, 5, 320, 9}}},
      {"a text too long for the margin is capped there and wraps downwards",
       {OneLine({50, 10, 300, 24}, 600, 30), Fixed({50, 30, 100, 40})},
       {{50, 10, 420, 40}, {50, 46, 100, 56}}},
      {"right-aligned labels of a column widen together, each as wide as its own text, and "
       "keep their values aligned",
       {RightAligned({10, 10, 100, 22}, 140), OneLine({105, 10, 300, 22}, 60),
        RightAligned({10, 25, 100, 37}, 80), OneLine({105, 25, 300, 37}, 60)},
       {{10, 10, 150, 22}, {155, 10, 350, 22}, {70, 25, 150, 37}, {155, 25, 350, 37}}},
      {"overlaps of the template are cleared: a rule starting inside its heading, a label "
       "reaching into the button below",
       {OneLine({10, 10, 130, 22}, 100), Rule({90, 15, 420, 17}),
        OneLine({10, 40, 420, 60}, 200, 13), OneLine({10, 58, 200, 80}, 100)},
       {{10, 10, 110, 22}, {114, 15, 420, 17}, {10, 40, 420, 58}, {10, 58, 200, 80}}},
      {"a button pushed past the margin starts a row of its own; the list below moves",
       {OneLine({10, 10, 200, 30}, 330), OneLine({210, 10, 400, 30}, 150),
        Fixed({10, 40, 420, 90})},
       {{10, 10, 340, 30}, {10, 36, 200, 56}, {10, 66, 420, 116}}},
      {"a button that ends at the right margin widens to the left and pushes its neighbour",
       {OneLine({250, 10, 330, 30}, 60), OneLine({340, 10, 420, 30}, 150)},
       {{184, 10, 264, 30}, {270, 10, 420, 30}}},
      {"a field beside a widened label gets narrower at the margin rather than moving away",
       {RightAligned({10, 10, 60, 22}, 90), Fixed({65, 8, 420, 24})},
       {{10, 10, 100, 22}, {105, 8, 420, 24}}},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.what);
    // Dialog units are not square: the side margin caps widths, not the bottom one.
    EXPECT_EQ(PlanLayout(testCase.controls, 430, 300, {10, 14}).rects, testCase.planned);
  }
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
    LayoutPlan plan = PlanLayout(controls, 430, 300, {10, 10});
    EXPECT_EQ(plan.rects[2].top, expected.blockTop) << expected.labelNeeds;
    EXPECT_EQ(plan.rects[3].top - plan.rects[2].top, 10) << "the block keeps its shape";
    EXPECT_EQ(plan.clientHeight, expected.clientHeight) << expected.labelNeeds;
  }
}

}  // namespace
