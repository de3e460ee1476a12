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

// Stores a click on the radio group and forces every known site's camera and microphone
// answers to match. The group keeps the user's choice even when nothing could be written.
int ApplyCameraMicChoice(SMSettingsManager& settings, int chosenIndex);
