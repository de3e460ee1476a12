#include "app/page_text.h"

#include <gtest/gtest.h>

TEST(PageTextTest, LinksAndParagraphsAndMissingTexts) {
  std::optional<std::wstring> text = L"Learn more", missing;
  EXPECT_TRUE(WrapLink(text));
  EXPECT_FALSE(WrapLink(missing));
  EXPECT_TRUE(AppendParagraph(text, L"Second."));
  EXPECT_FALSE(AppendParagraph(text, std::nullopt));
  EXPECT_EQ(text, L"<a>Learn more</a>\n\nSecond.");
  EXPECT_EQ(missing, std::nullopt);
}
