#include "cli/json_codec.h"
#include "input_properties.h"

bool SettingsJsonReadBackHolds(std::string_view text, std::string* whyNot) {
  std::string error;
  std::optional<DecodedSettings> settings = SettingsFromJson(text, &error);
  if (!settings) {
    if (error.empty()) {
      *whyNot = "rejected without a message";
      return false;
    }
    return true;
  }
  EncodeSettingsStream(*settings);
  const std::string written = DumpJson(SettingsToJson(*settings));
  std::optional<DecodedSettings> reread = SettingsFromJson(written, &error);
  if (!reread) {
    *whyNot = "the written JSON was rejected: " + error;
    return false;
  }
  if (DumpJson(SettingsToJson(*reread)) != written) {
    *whyNot = "the written JSON reads back differently";
    return false;
  }
  return true;
}
