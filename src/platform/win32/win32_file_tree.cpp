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

// A link counts nothing: what it points to is not part of the tree. The file itself is opened
// as itself, so a file swapped for a link after the check is not measured through it.
uint64_t SizeOf(const std::wstring& path) {
  DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    return 0;
  }
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    LARGE_INTEGER size{};
    BOOL known = GetFileSizeEx(file, &size);
    CloseHandle(file);
    return known ? static_cast<uint64_t>(size.QuadPart) : 0;
  }
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

// How far the file API got with a tree.
enum class DirectDelete {
  kDeleted,  // everything is gone
  kLeft,     // something plain is left (absent, read-only, in use): the shell may try it
  kRefused,  // a link could not be removed as a link: the shell must not walk this tree
};

DirectDelete Worse(DirectDelete a, DirectDelete b) {
  return static_cast<int>(a) > static_cast<int>(b) ? a : b;
}

bool IsReparsePoint(DWORD attributes) {
  return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// Removes a link itself, never what it points to. The link is opened as itself and deleted
// through that handle, so what goes is exactly what was checked. Under Wine a symbolic link of
// the host shows as a reparse point when listed, but every handle to it opens its target, and
// removing it by name removes an empty target instead: there it is refused.
DirectDelete RemoveLink(const std::wstring& path) {
  HANDLE link =
      CreateFileW(path.c_str(), DELETE | FILE_READ_ATTRIBUTES,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                  FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (link == INVALID_HANDLE_VALUE) return DirectDelete::kRefused;
  BY_HANDLE_FILE_INFORMATION info;
  FILE_DISPOSITION_INFO disposition{TRUE};
  bool removed =
      GetFileInformationByHandle(link, &info) && IsReparsePoint(info.dwFileAttributes) &&
      SetFileInformationByHandle(link, FileDispositionInfo, &disposition, sizeof disposition);
  CloseHandle(link);
  return removed ? DirectDelete::kDeleted : DirectDelete::kRefused;
}

DirectDelete DeleteEntryDirectly(const std::wstring& path, DWORD attributes, bool linksOnly);

// A folder and everything in it. Once something is left, the rest of the tree stays for the
// shell, as its own delete would have stopped there too; but every entry is still visited and
// every link in it removed, so that the shell finds no link to walk into.
DirectDelete DeleteFolderDirectly(const std::wstring& path, bool linksOnly) {
  // Opened as itself, a folder that became a link since it was listed shows as one; held open
  // without delete sharing while its entries go, it cannot be renamed away and replaced by a
  // junction under the walk.
  HANDLE folder = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (folder == INVALID_HANDLE_VALUE) return DirectDelete::kRefused;
  BY_HANDLE_FILE_INFORMATION info;
  if (!GetFileInformationByHandle(folder, &info) || IsReparsePoint(info.dwFileAttributes)) {
    CloseHandle(folder);
    return RemoveLink(path);
  }
  DirectDelete result = linksOnly ? DirectDelete::kLeft : DirectDelete::kDeleted;
  WIN32_FIND_DATAW entry;
  HANDLE find = FindFirstFileW((path + L"\\*").c_str(), &entry);
  if (find == INVALID_HANDLE_VALUE) {
    result = DirectDelete::kLeft;
  } else {
    do {
      if (IsDotEntry(entry.cFileName)) continue;
      const std::wstring child = path + L"\\" + entry.cFileName;
      result = Worse(result, DeleteEntryDirectly(child, entry.dwFileAttributes,
                                                 result != DirectDelete::kDeleted));
    } while (FindNextFileW(find, &entry));
    FindClose(find);
  }
  CloseHandle(folder);
  if (result != DirectDelete::kDeleted) return result;
  return RemoveDirectoryW(path.c_str()) ? DirectDelete::kDeleted : DirectDelete::kLeft;
}

// Deletes a file, a link or a folder tree with the file API. The shell's delete walks the same
// tree far more slowly, with a change notification for every entry; this is the work it does
// when nothing goes wrong.
DirectDelete DeleteEntryDirectly(const std::wstring& path, DWORD attributes, bool linksOnly) {
  // The shell's delete walks into a junction or a folder link and deletes what it points to.
  // This program runs elevated after a change on the Updates page, and any unprivileged program
  // can plant a junction in the user's data folders: followed, it would turn "Delete All" into
  // the deletion of system files. So a reparse point is only ever removed as itself, and a tree
  // holding one that cannot be removed so is never handed to the shell.
  if (IsReparsePoint(attributes)) return RemoveLink(path);
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return DeleteFolderDirectly(path, linksOnly);
  return !linksOnly && DeleteFileW(path.c_str()) ? DirectDelete::kDeleted : DirectDelete::kLeft;
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

bool SMNativePlatformServices::DeleteWithoutFollowingLinks(const std::string& path) {
  std::optional<std::wstring> widePath = ToUtf16(path);
  // The shell expands wildcards into names nobody has checked for links.
  if (!widePath || widePath->empty() || HasWildcard(*widePath)) return false;
  DWORD attributes = GetFileAttributesW(widePath->c_str());
  DirectDelete direct = attributes == INVALID_FILE_ATTRIBUTES
                            ? DirectDelete::kLeft
                            : DeleteEntryDirectly(*widePath, attributes, false);
  if (direct != DirectDelete::kLeft) return direct == DirectDelete::kDeleted;
  // What the file API deleted completely the shell would have deleted with success. What is
  // left plainly (an absent path, a read-only file, a file in use) goes to the shell, whose
  // result decides; no link is left in it.
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

bool SMNativePlatformServices::IsLink(const std::string& path) {
  std::optional<std::wstring> widePath = ToUtf16(path);
  if (!widePath) return false;
  DWORD attributes = GetFileAttributesW(widePath->c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && IsReparsePoint(attributes);
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
  if (IsCutDataPath(parent)) return false;
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
