#include "pages/camera_mic_logic.h"

#include "admincfg/parse_bool.h"
#include "pages/global_values.h"

int CameraMicIndexForAlways(std::optional<bool> defaultalways) {
  return defaultalways.value_or(false) ? kCameraMicBlock : kCameraMicAsk;
}

int ReadCameraMicIndex(SMSettingsManager& settings) {
  return CameraMicIndexForAlways(GlobalBoolean(settings, "defaultalways"));
}

bool IsCameraMicLockedByAdministrator(const SMAdminConfig& adminConfig) {
  return ParseBool(adminConfig.GetValue("AVHardwareDisable").value_or(""));
}
