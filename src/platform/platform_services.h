#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system.h"

// The path separator of the build's own platform: the player's paths on Windows use "\\".
#ifdef _WIN32
inline constexpr char kPathSeparator = '\\';
#else
inline constexpr char kPathSeparator = '/';
#endif

// Where the player keeps its data, and the file-tree operations the program performs there.
// Paths are UTF-8 everywhere. Computed paths are cached for the whole process on their first
// non-empty value, as the player does, so a later change of the administrator file during the
// run does not move them.
class SMPlatformServices {
 public:
  virtual ~SMPlatformServices() = default;

  // Deletes a file or folder tree; deleting what is not there succeeds.
  virtual bool DeleteTree(const std::string& path) = 0;
  // Deletes the files strictly inside the age window (seconds) and every folder emptied.
  virtual bool RemoveTreeByAge(const std::string& path, uint64_t minAgeSeconds,
                               uint64_t maxAgeSeconds) = 0;
  // Bytes of a file, or of every file below a folder; 0 when absent.
  virtual uint64_t TreeSize(const std::string& path) = 0;
  // TreeSize of a path that is normally one plain file. Start asks it for every known site, so
  // a platform where a file's size can be had without opening the file answers it that way.
  virtual uint64_t FileSize(const std::string& path) { return TreeSize(path); }
  // Creates parent + separator + name; the parent may be missing, but not its own parent.
  virtual bool CreateFolder(const std::string& parent, const std::string& name) = 0;
  virtual const std::string& PathSeparator();
  virtual const std::string& AssetCacheFolder();
  virtual const std::string& VXCacheFolder();
  virtual const std::string& PlayerDataRoot();
  virtual const std::string& PrivateDataFolder();
  // The names inside a folder (the first two entries of the listing skipped, as "." and ".."),
  // non-numeric names first in byte order, then numeric names by value.
  virtual std::optional<std::vector<std::string>> ListEntries(const std::string& folder) = 0;

  bool enableLocalAppData() const { return enableLocalAppData_; }
  SMSystem& system() { return system_; }

  // Forgets every cached path (tests build several profiles in one process).
  static void ResetPathCachesForTesting();

 protected:
  explicit SMPlatformServices(SMSystem& system);

 private:
  std::string RoamingPath(const char* suffix);
  std::string ComputePlayerDataRoot();

  SMSystem& system_;
  bool enableLocalAppData_ = false;
};

// The administrator file "tss.cfg" in the Tessalin\Vantrel folder of the 32-bit system folder
// (else of the system folder); empty when neither folder is known. Cached like the other paths.
const std::string& AdminConfigFilePath(SMSystem& system);

// A name relative to a base folder, with the platform's separator between the pieces
// (written with backslashes, as the player writes them).
std::string NativeRelativePath(const char* backslashPath);

// True when the bytes are UTF-8 text, which every path must be before it can be used.
bool IsUtf8Text(std::string_view text);
