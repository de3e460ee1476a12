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

  // Deletes a file or folder tree; deleting what is not there succeeds. A link at the path or
  // anywhere inside it is removed as a link: what it points to keeps every byte. Below the
  // player's data roots (the data root, and the vendor folder that holds the caches and the
  // licence folder) a link on a folder between the root and the path means that nothing is
  // deleted through it: the deletion fails. Links at or above the roots are followed, as the
  // player follows them. Nothing is deleted at or below a cut data path (IsCutDataPath).
  virtual bool DeleteTree(const std::string& path);
  // Deletes a settings file so that it can be written anew, following the folders above it
  // wherever links take them, as the player does; a link in the file's place is removed as a
  // link. False at or below a cut data path.
  bool DeleteBeforeRewrite(const std::string& path);
  // Deletes the files strictly inside the age window (seconds) and every folder emptied.
  virtual bool RemoveTreeByAge(const std::string& path, uint64_t minAgeSeconds,
                               uint64_t maxAgeSeconds) = 0;
  // Bytes of a file, or of every file below a folder; 0 when absent.
  virtual uint64_t TreeSize(const std::string& path) = 0;
  // TreeSize of a path that is normally one plain file. Start asks it for every known site, so
  // a platform where a file's size can be had without opening the file answers it that way.
  virtual uint64_t FileSize(const std::string& path) { return TreeSize(path); }
  // Creates parent + separator + name; the parent may be missing, but not its own parent.
  // Nothing is created at or below a cut data path.
  virtual bool CreateFolder(const std::string& parent, const std::string& name) = 0;
  virtual const std::string& PathSeparator();
  virtual const std::string& AssetCacheFolder();
  virtual const std::string& VXCacheFolder();
  virtual const std::string& PlayerDataRoot();
  virtual const std::string& PrivateDataFolder();
  // The names inside a folder (the first two entries of the listing skipped, as "." and ".."),
  // non-numeric names first in byte order, then numeric names by value.
  virtual std::optional<std::vector<std::string>> ListEntries(const std::string& folder) = 0;

  // What made the last refused deletion fail, kept until taken: the link on the way to the
  // path, or the cut data path it lies in.
  struct DeletionRefusal {
    enum class Reason { kLinkOnTheWay, kCutDataPath };
    Reason reason;
    std::string path;
  };
  std::optional<DeletionRefusal> TakeLastRefusal();

  bool enableLocalAppData() const { return enableLocalAppData_; }
  SMSystem& system() { return system_; }

  // Forgets every cached path (tests build several profiles in one process).
  static void ResetPathCachesForTesting();

 protected:
  explicit SMPlatformServices(SMSystem& system);

  // Deletes a file or folder tree without ever following a link: a link met anywhere, the path
  // itself included, is removed as a link, or the deletion fails.
  virtual bool DeleteWithoutFollowingLinks(const std::string& path) = 0;
  // True when the path is itself a symbolic link, junction or other reparse point.
  virtual bool IsLink(const std::string& path) = 0;

 private:
  std::string RoamingPath(const char* suffix);
  std::string ComputePlayerDataRoot();
  const std::string& VendorFolder();
  // The first link on a folder between a data root and the path, if any.
  std::optional<std::string> LinkOnTheWay(const std::string& path);

  SMSystem& system_;
  bool enableLocalAppData_ = false;
  std::optional<DeletionRefusal> lastRefusal_;
};

// The administrator file "tss.cfg" in the Tessalin\Vantrel folder of the 32-bit system folder
// (else of the system folder); empty when neither folder is known. Cached like the other paths.
const std::string& AdminConfigFilePath(SMSystem& system);

// True when path is empty, or is or lies below a data path that could not be built whole: the
// folder it is built on is not UTF-8 text (the path came out empty), or the player's 260-unit
// buffer cut its suffix. Such a path names another folder, a sibling or a parent of the
// player's own, so nothing is ever deleted or written there.
bool IsCutDataPath(const std::string& path);

// True for the platform's separator; on Windows also for "/", which the system reads as one.
bool IsPathSeparator(char c);
// True when path is folder itself or lies below it.
bool IsAtOrBelow(const std::string& path, const std::string& folder);

// A name relative to a base folder, with the platform's separator between the pieces
// (written with backslashes, as the player writes them).
std::string NativeRelativePath(const char* backslashPath);

// True when the bytes are UTF-8 text, which every path must be before it can be used.
bool IsUtf8Text(std::string_view text);
