#pragma once

#include <optional>
#include <string>

#include "settings/settings_manager.h"

// A global value of the master settings, when it is present with the expected type.
std::optional<double> GlobalNumber(SMSettingsManager& settings, const std::string& name);
std::optional<bool> GlobalBoolean(SMSettingsManager& settings, const std::string& name);
