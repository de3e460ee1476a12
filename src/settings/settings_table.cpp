#include "settings/settings_table.h"

#include <utility>

uint32_t SettingsTable::BucketOf(const std::string& name) {
  uint32_t sum = 0;
  for (char byte : name)
    sum += static_cast<uint32_t>(static_cast<int32_t>(static_cast<int8_t>(byte)));
  return sum % kBucketCount;
}

void SettingsTable::Insert(const SettingValue& value) {
  Insert(SettingValue(value));
}

void SettingsTable::Insert(SettingValue&& value) {
  if (SettingValue* existing = Find(value.name())) {
    *existing = std::move(value);
    return;
  }
  auto& bucket = buckets_[BucketOf(value.name())];
  bucket.push_back(std::make_unique<SettingValue>(std::move(value)));
}

bool SettingsTable::Remove(const std::string& name) {
  auto& bucket = buckets_[BucketOf(name)];
  for (auto entry = bucket.begin(); entry != bucket.end(); ++entry) {
    if ((*entry)->name() == name) {
      bucket.erase(entry);
      return true;
    }
  }
  return false;
}

const SettingValue* SettingsTable::Find(const std::string& name) const {
  for (const auto& entry : buckets_[BucketOf(name)]) {
    if (entry->name() == name) return entry.get();
  }
  return nullptr;
}

SettingValue* SettingsTable::Find(const std::string& name) {
  return const_cast<SettingValue*>(std::as_const(*this).Find(name));
}

size_t SettingsTable::size() const {
  size_t count = 0;
  for (const auto& bucket : buckets_) count += bucket.size();
  return count;
}

std::vector<std::string> SettingsTable::Names() const {
  std::vector<std::string> names;
  ForEach([&](const SettingValue& value) { names.push_back(value.name()); });
  return names;
}
