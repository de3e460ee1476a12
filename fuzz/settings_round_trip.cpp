#include "settings_round_trip.h"

#include <algorithm>
#include <vector>

#include "settings/settings_reader.h"
#include "settings/settings_writer.h"

namespace {

std::vector<std::string> SortedNames(const SettingsTable& table) {
  std::vector<std::string> names = table.Names();
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

bool SettingsRoundTripHolds(std::span<const uint8_t> bytes, std::string* whyNot) {
  SMSettingsReader reader(bytes);
  std::string objectName;
  std::unique_ptr<SettingsTable> table = reader.Parse(&objectName);
  if (!table) return true;

  const std::string written = SerializeSettings(*table, objectName);
  SMSettingsReader rereader(written);
  std::string rereadName;
  std::unique_ptr<SettingsTable> reread = rereader.Parse(&rereadName);
  if (!reread) {
    *whyNot = "the written stream was rejected";
    return false;
  }
  if (rereadName != objectName) {
    *whyNot = "object name changed";
    return false;
  }
  if (SortedNames(*table) != SortedNames(*reread)) {
    *whyNot = "names changed";
    return false;
  }
  for (const std::string& name : table->Names()) {
    if (!IdenticalValues(*table->Find(name), *reread->Find(name))) {
      *whyNot = "value changed: " + name;
      return false;
    }
  }
  // Written again, the stream must not change any more.
  if (SerializeSettings(*reread, rereadName).size() != written.size()) {
    *whyNot = "second write differs in length";
    return false;
  }
  return true;
}
