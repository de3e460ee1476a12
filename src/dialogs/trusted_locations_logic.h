#pragma once

#include <cstddef>
#include <string>
#include <vector>

class SMSettingsManager;

// The result of one change to the trusted locations.
enum class TrustedChange {
  kWritten,        // the master settings file holds the change
  kUnchanged,      // nothing to do (empty or same text, nothing selected, location gone)
  kAlreadyListed,  // the location is listed already; names stay unique
  kWriteFailed,    // the master file could not be written; the setting is as it was
};

// The trusted files and folders, in the order they were added. Elements the player would not
// count (not booleans) are listed all the same; a setting that is not an array lists
// nothing. Reading never writes anything back.
std::vector<std::string> TrustedLocations(SMSettingsManager& settings);
// Appends a location with the value true.
TrustedChange AddTrustedLocation(SMSettingsManager& settings, const std::string& location);
// Renames a location in place, keeping its position and its value.
TrustedChange RenameTrustedLocation(SMSettingsManager& settings, const std::string& former,
                                    const std::string& renamed);
// Removes the given locations and keeps the order of the others.
TrustedChange RemoveTrustedLocations(SMSettingsManager& settings,
                                     const std::vector<std::string>& locations);

// The filter of the file picker: description and pattern, each ended by a null character, and
// one more null character at the end of the list.
std::wstring PickerFilter(const std::wstring& description, const std::wstring& pattern);
// The text a picker left in its buffer of capacity characters: up to the first null character,
// or the whole buffer when it has none.
std::wstring PickedPathText(const wchar_t* buffer, size_t capacity);

// The largest path the pickers hand back, in UTF-16 units with the terminator.
inline constexpr size_t kLongestPickedPath = 32768;
