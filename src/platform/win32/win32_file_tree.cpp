#include <windows.h>
// shellapi.h needs windows.h first.
#include <shellapi.h>

#include "platform/file_tree_support.h"
#include "platform/win32/utf16.h"
#include "platform/win32/win32_platform.h"

namespace {

// SHFileOperationW results that mean the source was missing or not valid: deleting what is not
// there counts as done.
constexpr int kDeleteSuccessCodes[] = {0, 2, 124, 1026};
constexpr FILEOP_FLAGS kSilentDelete = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;

std::optional<uint64_t>& FixedNow() {
  static std::optional<uint64_t> fixedNow;
  return fixedNow;
}

uint64_t ToU64(const FILETIME& time) {
  return (static_cast<uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

bool IsDotEntry(const wchar_t* name) {
  return name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'));
}

// A folder reached through a junction or a symbolic link is not walked: what it points to lies
// outside the tree.
bool IsRealFolder(const WIN32_FIND_DATAW& entry) {
  return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
         (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

// Calls visit(entry) for every entry of the folder but "." and ".."; false when the listing
// cannot start.
template <typename Visit>
bool ForEachEntry(const std::wstring& folder, Visit visit) {
  WIN32_FIND_DATAW entry;
  HANDLE find = FindFirstFileW((folder + L"\\*").c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE) return false;
  do {
    if (!IsDotEntry(entry.cFileName)) visit(entry);
  } while (FindNextFileW(find, &entry));
  FindClose(find);
  return true;
}

struct WalkResult {
  bool succeeded;
  bool empty;
};

WalkResult WalkByAge(const std::wstring& folder, uint64_t minAge, uint64_t maxAge) {
  uint64_t now = FileTreeNow();
  if (now == 0) return {false, false};
  bool empty = true;
  bool listed = ForEachEntry(folder, [&](const WIN32_FIND_DATAW& entry) {
    std::wstring path = folder + L"\\" + entry.cFileName;
    if (IsRealFolder(entry)) {
      WalkResult sub = WalkByAge(path, minAge, maxAge);
      if (!sub.succeeded || !sub.empty || !RemoveDirectoryW(path.c_str())) empty = false;
    } else if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
               !IsInsideAgeWindow(now, ToU64(entry.ftLastWriteTime), minAge, maxAge) ||
               !DeleteFileW(path.c_str())) {
      empty = false;
    }
  });
  if (!listed) return {false, false};
  return {true, empty};
}

uint64_t SizeOf(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return 0;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    LARGE_INTEGER size{};
    BOOL known = GetFileSizeEx(file, &size);
    CloseHandle(file);
    return known ? static_cast<uint64_t>(size.QuadPart) : 0;
  }
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return 0;
  uint64_t total = 0;
  ForEachEntry(path, [&](const WIN32_FIND_DATAW& entry) {
    total += SizeOf(path + L"\\" + entry.cFileName);
  });
  return total;
}

// Creates the folder, or, when that fails for another reason than its existence, the nearest
// missing ancestor only. The player's step does not retry the folder itself afterwards, so
// CreateFolder succeeds when at most the parent is missing; callers depend on nothing more.
// True when the folder itself was there or has been made.
bool EnsureFolder(const std::wstring& path) {
  if (CreateDirectoryW(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS) {
    return true;
  }
  size_t cut = path.rfind(L'\\');
  if (cut == std::wstring::npos || cut == 0) return false;
  EnsureFolder(path.substr(0, cut));
  return false;
}

// Deletes a file, or a folder with everything in it, with the file API; false as soon as
// anything is not plainly deletable (absent, read-only, in use, a junction...), leaving what is
// left for the shell. The shell's delete walks the same tree far more slowly, with a change
// notification for every entry, and this is the work it does when nothing goes wrong.
bool DeleteDirectly(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) return DeleteFileW(path.c_str()) != 0;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return false;
  WIN32_FIND_DATAW entry;
  HANDLE find = FindFirstFileW((path + L"\\*").c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE) return false;
  bool deleted = true;
  do {
    if (IsDotEntry(entry.cFileName)) continue;
    const std::wstring child = path + L"\\" + entry.cFileName;
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
      deleted = IsRealFolder(entry) && DeleteDirectly(child);
    } else {
      deleted = DeleteFileW(child.c_str()) != 0;
    }
  } while (deleted && FindNextFileW(find, &entry));
  FindClose(find);
  return deleted && RemoveDirectoryW(path.c_str()) != 0;
}

bool HasWildcard(const std::wstring& path) {
  return path.find_first_of(L"*?") != std::wstring::npos;
}

}  // namespace

uint64_t FileTreeNow() {
  if (FixedNow()) return *FixedNow();
  SYSTEMTIME systemTime;
  GetSystemTime(&systemTime);
  FILETIME fileTime;
  if (!SystemTimeToFileTime(&systemTime, &fileTime)) return 0;
  return ToU64(fileTime);
}

void SetFileTreeNowForTesting(std::optional<uint64_t> fixedNow) {
  FixedNow() = fixedNow;
}

bool SMNativePlatformServices::DeleteTree(const std::string& path) {
  std::optional<std::wstring> widePath = ToUtf16(path);
  if (!widePath) return false;
  // What the file API deletes completely the shell would have deleted with success. Anything
  // else (an absent path, wildcards the shell expands, a file it must force) goes to the shell,
  // whose result decides, on whatever is left.
  if (!widePath->empty() && !HasWildcard(*widePath) && DeleteDirectly(*widePath)) return true;
  std::wstring fromList = *widePath;
  fromList.push_back(L'\0');  // the shell's list of names ends with an empty name
  SHFILEOPSTRUCTW operation{};
  operation.wFunc = FO_DELETE;
  operation.pFrom = fromList.c_str();
  operation.fFlags = kSilentDelete;
  int result = SHFileOperationW(&operation);
  for (int success : kDeleteSuccessCodes) {
    if (result == success) return true;
  }
  return false;
}

bool SMNativePlatformServices::RemoveTreeByAge(const std::string& path, uint64_t minAgeSeconds,
                                               uint64_t maxAgeSeconds) {
  std::optional<std::wstring> widePath = ToUtf16(path);
  if (!widePath) return false;
  WalkResult walk = WalkByAge(*widePath, minAgeSeconds, maxAgeSeconds);
  if (walk.succeeded && walk.empty) return RemoveDirectoryW(widePath->c_str()) != 0;
  return walk.succeeded;
}

uint64_t SMNativePlatformServices::TreeSize(const std::string& path) {
  std::optional<std::wstring> widePath = ToUtf16(path);
  return widePath ? SizeOf(*widePath) : 0;
}

bool SMNativePlatformServices::CreateFolder(const std::string& parent, const std::string& name) {
  std::optional<std::wstring> wideParent = ToUtf16(parent);
  std::optional<std::wstring> wideName = ToUtf16(name);
  if (!wideParent || !wideName) return false;
  // "parent\\." is the parent itself: once the parent is there, creating it again can only
  // find it there. Every settings write asks this, so the second call is saved.
  if (EnsureFolder(*wideParent) && *wideName == L".") return true;
  std::wstring path = *wideParent + L"\\" + *wideName;
  return CreateDirectoryW(path.c_str(), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

std::optional<std::vector<std::string>> SMNativePlatformServices::ListEntries(
    const std::string& folder) {
  std::optional<std::wstring> wideFolder = ToUtf16(folder);
  if (!wideFolder) return std::nullopt;
  std::vector<std::string> names;
  WIN32_FIND_DATAW entry;
  HANDLE find = FindFirstFileW((*wideFolder + L"\\*").c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE) return names;
  // The first two entries are "." and ".." and are dropped unseen, as the player does.
  if (FindNextFileW(find, &entry) && FindNextFileW(find, &entry)) {
    do {
      // A "." or ".." further down is never a real entry (and must never be deleted as one).
      if (IsDotEntry(entry.cFileName)) continue;
      std::optional<std::string> name = ToUtf8(entry.cFileName);
      if (!name) {
        FindClose(find);
        return std::nullopt;
      }
      names.push_back(std::move(*name));
    } while (FindNextFileW(find, &entry));
  }
  FindClose(find);
  SortEntryNames(names);
  return names;
}
