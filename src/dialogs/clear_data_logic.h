#pragma once

class SMSettingsManager;
class SMPlatformServices;
class SMPrivateDataFolder;

// What the user asked to delete.
struct ClearDataRequest {
  bool siteDataAndSettings = true;
  bool licenceFiles = false;
};

// What happened; each failed group gets its own message.
struct ClearDataOutcome {
  bool nothingRecorded = false;  // no "domains" setting: nothing at all was touched
  bool siteDataFailed = false;
  bool licenceFilesFailed = false;
};

// Deletes every site's data and settings (then the asset cache), and the licence files, as
// asked. With no recorded sites nothing is deleted, not even the licence files: the player
// behaves the same way.
ClearDataOutcome ClearAllData(SMSettingsManager& settings, SMPlatformServices& platform,
                              SMPrivateDataFolder& privateData, ClearDataRequest request);
