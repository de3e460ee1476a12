#pragma once

#include <optional>

#include "admincfg/admin_config.h"
#include "settings/settings_manager.h"

// The Camera and Mic page's radio group: 0 Ask, 1 Block.
enum CameraMicChoice : int { kCameraMicAsk = 0, kCameraMicBlock = 1 };

int CameraMicIndexForAlways(std::optional<bool> defaultalways);
int ReadCameraMicIndex(SMSettingsManager& settings);
// The administrator's "AVHardwareDisable": the page then shows Block and cannot be changed.
bool IsCameraMicLockedByAdministrator(const SMAdminConfig& adminConfig);
