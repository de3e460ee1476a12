#pragma once

#include <cstdint>

class SMSettingsManager;
class SMPlatformServices;
class SMPrivateDataFolder;
class SMUserPrompts;

// A check box's state as the dialog keeps it: 0 unchecked, 1 checked, 2 indeterminate.
inline constexpr int kCheckUnchecked = 0;
inline constexpr int kCheckChecked = 1;
inline constexpr int kCheckIndeterminate = 2;
// A state outside 0..2 shows as unchecked.
int ClampCheckState(int state);

// The boxes' states when the dialog opens: site data checked, licence files not.
inline constexpr int kInitialSiteDataState = kCheckChecked;
inline constexpr int kInitialLicenceState = kCheckUnchecked;

// What the user asked to delete.
struct ClearDataRequest {
  bool siteDataAndSettings = true;
  bool licenceFiles = false;
};

// Only a box that is checked asks for its group; an indeterminate one does not.
ClearDataRequest RequestFromCheckStates(int siteDataState, int licenceState);

// What happened; each failed group gets its own message.
struct ClearDataOutcome {
  bool nothingRecorded = false;  // no list of known sites: nothing at all was touched
  bool siteDataFailed = false;
  bool licenceFilesFailed = false;
};

// "Delete Data": deletes every site's data and settings (then the asset cache), and the licence
// files, as asked, with one error box for each group that failed, shown before the next group
// is deleted. With no recorded sites nothing is deleted, not even the licence files: the player
// behaves the same way. A failure in one group never stops the other, and nothing deleted is
// put back.
ClearDataOutcome ClearAllData(SMSettingsManager& settings, SMPlatformServices& platform,
                              SMPrivateDataFolder& privateData, SMUserPrompts& prompts,
                              ClearDataRequest request);
