#pragma once

#include <string>
#include <vector>

class SMSettingsManager;

// The result of one change to the trusted locations.
enum class TrustedChange {
  kWritten,    // the master settings file holds the change
  kUnchanged,  // nothing to do (already listed, empty or same text, nothing selected)
  kWriteFailed,
};

// The trusted files and folders, in the order they were added.
std::vector<std::string> TrustedLocations(SMSettingsManager& settings);
// Appends a location; a location already listed (exact bytes) changes nothing.
TrustedChange AddTrustedLocation(SMSettingsManager& settings, const std::string& location);
// Renames a location in place, keeping its position.
TrustedChange RenameTrustedLocation(SMSettingsManager& settings, const std::string& former,
                                    const std::string& renamed);
// Removes the given locations and keeps the order of the others.
TrustedChange RemoveTrustedLocations(SMSettingsManager& settings,
                                     const std::vector<std::string>& locations);
