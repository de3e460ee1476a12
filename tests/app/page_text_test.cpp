#include "app/page_text.h"

#include <gtest/gtest.h>

namespace {

TEST(PageTextTest, WrapLinkMakesTheWholeTextOneLink) {
  std::optional<std::wstring> text = L"Learn more";
  EXPECT_TRUE(WrapLink(text));
  EXPECT_EQ(*text, L"<a>Learn more</a>");

  std::optional<std::wstring> missing;
  EXPECT_FALSE(WrapLink(missing));
  EXPECT_FALSE(missing.has_value());
}

TEST(PageTextTest, AppendParagraphJoinsWithABlankLineAndIgnoresAMissingText) {
  std::optional<std::wstring> text = L"First.";
  EXPECT_TRUE(AppendParagraph(text, L"Second."));
  EXPECT_EQ(*text, L"First.\n\nSecond.");

  EXPECT_FALSE(AppendParagraph(text, std::nullopt));
  EXPECT_EQ(*text, L"First.\n\nSecond.");
}

}  // namespace
