#include "admincfg/parse_bool.h"

#include <gtest/gtest.h>

#include <string>

TEST(ParseBool, ReadsTextsAsThePlayerDoes) {
  struct Case {
    std::string text;
    bool expected;
  };
  // clang-format off
  const Case cases[] = {
      {"tRuE", true}, {"Yes", true}, {"Y", true}, {"t", true}, {"-3", true}, {"2abc", true},
      {" 7", true}, {std::string("1\0", 2), true}, {"", false}, {"0", false}, {"on", false},
      {" yes", false}, {"yes ", false}, {"truex", false}, {"0x1", false},
      {std::string("\0" "1", 2), false}};
  // clang-format on
  for (const Case& c : cases) {
    EXPECT_EQ(ParseBool(c.text), c.expected) << '"' << c.text << '"';
  }
}
