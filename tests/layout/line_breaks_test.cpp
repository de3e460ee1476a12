#include "layout/line_breaks.h"

#include <gtest/gtest.h>

namespace {

TEST(LineBreaksTest, UnitsEndWhereTheScriptAllowsALineBreak) {
  struct Case {
    const char* what;
    std::wstring line;
    std::vector<LineUnit> units;
  };
  const Case cases[] = {
      {"spaces, one or several, stand before the next word",
       L"Learn  more",
       {{L"", L"Learn"}, {L"  ", L"more"}}},
      {"an invisible break separates words and disappears",
       L"\u0e40\u0e27\u0e47\u0e1a\u200b\u0e44\u0e0b\u0e15\u0e4c",
       {{L"", L"\u0e40\u0e27\u0e47\u0e1a"}, {L"", L"\u0e44\u0e0b\u0e15\u0e4c"}}},
      {"Japanese breaks between letters, and beside Latin words",
       L"設定のVantrel",
       {{L"", L"設"}, {L"", L"定"}, {L"", L"の"}, {L"", L"Vantrel"}}},
      {"a comma, a full stop, a closing bracket or a long-vowel mark never starts a line, and "
       "an opening bracket never ends one",
       L"データ、（履歴）。",
       {{L"", L"デー"}, {L"", L"タ、"}, {L"", L"（履"}, {L"", L"歴）。"}}},
      {"the link markers stay with the letters beside them",
       L"<a>詳細</a> more",
       {{L"", L"<a>詳"}, {L"", L"細</a>"}, {L" ", L"more"}}},
      {"a leading space is kept before the first word", L" x", {{L" ", L"x"}}},
  };
  for (const Case& testCase : cases) {
    SCOPED_TRACE(testCase.what);
    EXPECT_EQ(SplitAtBreaks(testCase.line), testCase.units);
  }
}

}  // namespace
