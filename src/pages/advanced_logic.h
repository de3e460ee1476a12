#pragma once

class SMPrivateDataFolder;
class SMUserPrompts;

enum class DeauthorizeOutcome {
  kCancelled,  // the user did not confirm; nothing was touched
  kDeleted,
  kFailed,  // some licence files are still there; the user was told
};

// "Deauthorize This Computer…": after the user confirms, deletes the protected-content licence
// files; when that fails the user is told that some are left.
DeauthorizeOutcome DeauthorizeComputer(SMUserPrompts& prompts, SMPrivateDataFolder& privateData);
