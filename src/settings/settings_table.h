#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "settings/setting_value.h"

// The named values of one settings file. The player keeps them in a table of 16 buckets and
// writes them in the table's iteration order, so that order is part of the file format: buckets
// in ascending order, and inside a bucket the most recently added name first. Replacing the value
// of a name already present keeps its place.
class SettingsTable {
 public:
  static constexpr uint32_t kBucketCount = 16;

  // The bucket of a name: the sum of its bytes taken as signed 8-bit numbers, modulo 16.
  static uint32_t BucketOf(const std::string& name);

  // Inserts a copy of the value under its name, or replaces the value already there.
  void Insert(const SettingValue& value);
  void Insert(SettingValue&& value);
  // Removes the value of that name; false when there was none.
  bool Remove(const std::string& name);
  const SettingValue* Find(const std::string& name) const;
  SettingValue* Find(const std::string& name);
  bool Contains(const std::string& name) const { return Find(name) != nullptr; }
  size_t size() const;
  bool empty() const { return size() == 0; }

  // The names in iteration order.
  std::vector<std::string> Names() const;
  // Calls visit(const SettingValue&) for every value in iteration order.
  template <typename Visit>
  void ForEach(Visit visit) const {
    for (const auto& bucket : buckets_) {
      for (auto entry = bucket.rbegin(); entry != bucket.rend(); ++entry) visit(**entry);
    }
  }

 private:
  // Each bucket holds its entries oldest first; iteration walks it backwards. The values sit
  // behind pointers so that a pointer handed out stays valid while other names are added.
  std::array<std::vector<std::unique_ptr<SettingValue>>, kBucketCount> buckets_;
};
