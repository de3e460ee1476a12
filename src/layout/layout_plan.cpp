#include "layout/layout_plan.h"

#include <algorithm>
#include <numeric>

namespace {

// Space between a heading and the rule that continues it.
constexpr int kRuleGap = 4;

bool SharesRows(const LayoutRect& a, const LayoutRect& b) {
  return a.top < b.bottom && b.top < a.bottom;
}

void Widen(std::vector<LayoutRect>& rects, const std::vector<LayoutControl>& controls, size_t index,
           int clientWidth, int margin) {
  LayoutRect& rect = rects[index];
  int limit = clientWidth - margin;
  int wanted = std::min(rect.left + controls[index].neededWidth, limit);
  int grow = wanted - rect.right;
  if (grow <= 0) return;
  int oldRight = rect.right;
  rect.right = wanted;
  for (size_t other = 0; other < rects.size(); ++other) {
    if (other == index || !SharesRows(rects[other], rect)) continue;
    LayoutRect& beside = rects[other];
    if (controls[other].kind == LayoutKind::kRule) {
      // A rule keeps its right end and starts after the text; it may vanish.
      if (beside.right > oldRight) {
        beside.left = std::min(std::max(beside.left, rect.right + kRuleGap), beside.right);
      }
    } else if (beside.left >= oldRight) {
      beside.left += grow;
      beside.right = std::min(beside.right + grow, limit);
    }
  }
}

void Grow(std::vector<LayoutRect>& rects, const std::vector<LayoutControl>& controls,
          size_t index) {
  LayoutRect& rect = rects[index];
  int grow = controls[index].neededHeight - rect.height();
  if (grow <= 0) return;
  int oldBottom = rect.bottom;
  rect.bottom += grow;
  for (size_t other = 0; other < rects.size(); ++other) {
    if (other == index || rects[other].top < oldBottom) continue;
    rects[other].top += grow;
    rects[other].bottom += grow;
  }
}

}  // namespace

std::vector<LayoutRect> PlanLayout(const std::vector<LayoutControl>& controls, int clientWidth,
                                   int margin) {
  std::vector<LayoutRect> rects;
  rects.reserve(controls.size());
  for (const LayoutControl& control : controls) rects.push_back(control.rect);
  // Top to bottom, so that a control moved down is fitted at its new place.
  std::vector<size_t> order(controls.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(),
                   [&](size_t a, size_t b) { return controls[a].rect.top < controls[b].rect.top; });
  for (size_t index : order) {
    LayoutKind kind = controls[index].kind;
    if (kind == LayoutKind::kOneLine) Widen(rects, controls, index, clientWidth, margin);
    if (kind == LayoutKind::kOneLine || kind == LayoutKind::kWrapping) {
      Grow(rects, controls, index);
    }
  }
  return rects;
}

LayoutRect MirrorRect(const LayoutRect& rect, int clientWidth) {
  return LayoutRect{clientWidth - rect.right, rect.top, clientWidth - rect.left, rect.bottom};
}
