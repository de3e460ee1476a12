#include "settings/settings_table.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// Ascending buckets with the newest name of a bucket first are pinned by the manager's first-run
// file; here the edges: the empty name, a byte above 0x7F, a replaced value, names differing in
// case only.
TEST(SettingsTable, IterationFollowsBucketsWithTheNewestNameOfABucketFirst) {
  SettingsTable table;
  for (const char* name : {"\xFF", "a", "", "A", "b"}) table.Insert(SettingValue::Number(name, 1));
  table.Insert(SettingValue::String("a", "new"));
  EXPECT_EQ(table.Names(), (std::vector<std::string>{"", "A", "a", "b", "\xFF"}));
  EXPECT_EQ(table.Find("a")->text(), "new");
  EXPECT_EQ(table.Find("A")->number(), 1);
}
