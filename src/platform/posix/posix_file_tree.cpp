#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

#include "platform/file_tree_support.h"
#include "platform/posix/posix_platform.h"

namespace {

// 1970-01-01 in file-time units, so that ages are counted as on Windows.
constexpr uint64_t kUnixEpochInFileTime = 116444736000000000ULL;

std::optional<uint64_t>& FixedNow() {
  static std::optional<uint64_t> fixedNow;
  return fixedNow;
}

uint64_t ToFileTime(const timespec& time) {
  return kUnixEpochInFileTime + static_cast<uint64_t>(time.tv_sec) * kFileTimeUnitsPerSecond +
         static_cast<uint64_t>(time.tv_nsec) / 100;
}

bool IsDotEntry(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

// The names inside a folder except "." and ".."; nothing when it cannot be opened.
std::optional<std::vector<std::string>> ReadFolder(const std::string& folder) {
  DIR* directory = opendir(folder.c_str());
  if (directory == nullptr) return std::nullopt;
  std::vector<std::string> names;
  while (dirent* entry = readdir(directory)) {
    if (!IsDotEntry(entry->d_name)) names.emplace_back(entry->d_name);
  }
  closedir(directory);
  return names;
}

std::string Join(const std::string& folder, const std::string& name) {
  return folder + "/" + name;
}

// Symbolic links are never followed: removing one removes the link, and a tree is only ever
// walked through real folders, so nothing outside the tree is touched.
bool DeleteEntry(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return errno == ENOENT || errno == ENOTDIR;
  if (!S_ISDIR(status.st_mode)) return unlink(path.c_str()) == 0 || errno == ENOENT;
  bool deleted = true;
  if (std::optional<std::vector<std::string>> names = ReadFolder(path)) {
    for (const std::string& name : *names) deleted = DeleteEntry(Join(path, name)) && deleted;
  }
  return rmdir(path.c_str()) == 0 && deleted;
}

struct WalkResult {
  bool succeeded;
  bool empty;
};

WalkResult WalkByAge(const std::string& folder, uint64_t minAge, uint64_t maxAge) {
  uint64_t now = FileTreeNow();
  std::optional<std::vector<std::string>> names = ReadFolder(folder);
  if (!names) return {false, false};
  bool empty = true;
  for (const std::string& name : *names) {
    std::string path = Join(folder, name);
    struct stat status;
    if (lstat(path.c_str(), &status) != 0) {
      empty = false;
      continue;
    }
    if (S_ISDIR(status.st_mode)) {
      WalkResult sub = WalkByAge(path, minAge, maxAge);
      if (!sub.succeeded || !sub.empty || rmdir(path.c_str()) != 0) empty = false;
    } else if (!IsInsideAgeWindow(now, ToFileTime(status.st_mtim), minAge, maxAge) ||
               unlink(path.c_str()) != 0) {
      empty = false;
    }
  }
  return {true, empty};
}

uint64_t SizeOf(const std::string& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) return 0;
  if (S_ISREG(status.st_mode)) return static_cast<uint64_t>(status.st_size);
  if (!S_ISDIR(status.st_mode)) return 0;
  uint64_t total = 0;
  if (std::optional<std::vector<std::string>> names = ReadFolder(path)) {
    for (const std::string& name : *names) total += SizeOf(Join(path, name));
  }
  return total;
}

// Creates the folder, or, when that fails for another reason than its existence, the nearest
// missing ancestor only. The player's step does not retry the folder itself afterwards, so
// CreateFolder succeeds when at most the parent is missing; callers depend on nothing more.
void EnsureFolder(const std::string& path) {
  if (mkdir(path.c_str(), 0777) == 0 || errno == EEXIST) return;
  size_t cut = path.rfind('/');
  if (cut == std::string::npos || cut == 0) return;
  EnsureFolder(path.substr(0, cut));
}

}  // namespace

uint64_t FileTreeNow() {
  if (FixedNow()) return *FixedNow();
  timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  return ToFileTime(now);
}

void SetFileTreeNowForTesting(std::optional<uint64_t> fixedNow) {
  FixedNow() = fixedNow;
}

bool SMNativePlatformServices::DeleteTree(const std::string& path) {
  return DeleteEntry(path);
}

bool SMNativePlatformServices::RemoveTreeByAge(const std::string& path, uint64_t minAgeSeconds,
                                               uint64_t maxAgeSeconds) {
  WalkResult walk = WalkByAge(path, minAgeSeconds, maxAgeSeconds);
  if (walk.succeeded && walk.empty) return rmdir(path.c_str()) == 0;
  return walk.succeeded;
}

uint64_t SMNativePlatformServices::TreeSize(const std::string& path) {
  return SizeOf(path);
}

bool SMNativePlatformServices::CreateFolder(const std::string& parent, const std::string& name) {
  EnsureFolder(parent);
  // Windows drops a "." component from a path, so "parent\." creates the parent itself; the
  // settings writer relies on that to make a file's folder.
  std::string path = name == "." ? parent : Join(parent, name);
  return mkdir(path.c_str(), 0777) == 0 || errno == EEXIST;
}

std::optional<std::vector<std::string>> SMNativePlatformServices::ListEntries(
    const std::string& folder) {
  // Windows drops the first two entries of a listing, which are "." and ".."; readdir returns
  // them in no fixed place, so they are skipped by name to list the same real entries.
  std::vector<std::string> names = ReadFolder(folder).value_or(std::vector<std::string>{});
  SortEntryNames(names);
  return names;
}
