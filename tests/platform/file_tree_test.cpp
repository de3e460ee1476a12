#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/file_tree_support.h"
#include "platform/platform_services.h"
#include "support/fake_system.h"
#include "support/native_platform.h"
#include "support/temp_folder.h"

#ifdef _WIN32
#include <windows.h>
// shellapi.h needs windows.h first.
#include <shellapi.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace {

// A fixed "now": 2020-01-01 00:00:00 UTC in 100-nanosecond units since 1601.
constexpr uint64_t kNow = 132223104000000000ULL;
constexpr uint64_t kSecond = kFileTimeUnitsPerSecond;

void SetLastWriteTime(const fs::path& path, uint64_t fileTime) {
#ifdef _WIN32
  HANDLE file = CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  ASSERT_NE(file, INVALID_HANDLE_VALUE);
  FILETIME time{static_cast<DWORD>(fileTime), static_cast<DWORD>(fileTime >> 32)};
  ASSERT_TRUE(SetFileTime(file, nullptr, nullptr, &time));
  CloseHandle(file);
#else
  constexpr uint64_t kUnixEpoch = 116444736000000000ULL;
  uint64_t sinceUnixEpoch = fileTime - kUnixEpoch;
  timespec times[2];
  times[0].tv_sec = 0;
  times[0].tv_nsec = UTIME_OMIT;
  times[1].tv_sec = static_cast<time_t>(sinceUnixEpoch / kSecond);
  times[1].tv_nsec = static_cast<long>((sinceUnixEpoch % kSecond) * 100);
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
#endif
}

}  // namespace

struct FileTree : testing::Test {
  TempFolder temp;
  FakeSystem system;
  std::unique_ptr<SMPlatformServices> platform = MakeNativePlatform(system);

  std::string Path(const fs::path& relative) const { return temp.Utf8(relative); }
  void Write(const fs::path& relative, const std::string& bytes) {
    WriteFileBytes(temp.path() / relative, bytes);
  }
  bool Exists(const fs::path& relative) const { return fs::exists(temp.path() / relative); }
  void TearDown() override { SetFileTreeNowForTesting(std::nullopt); }
};

TEST_F(FileTree, DeleteTreeRemovesFilesAndFoldersAndSucceedsOnWhatIsAbsent) {
  Write("keep/sibling.txt", "s");
  Write("gone/sub/deeper/b.txt", "b");
  fs::create_directories(temp.path() / "gone" / "empty");
  Write("single.txt", "1");
  for (const char* path : {"gone", "single.txt", "never-there"}) {
    EXPECT_TRUE(platform->DeleteTree(Path(path))) << path;
    EXPECT_FALSE(Exists(path)) << path;
  }
  EXPECT_TRUE(platform->DeleteTree(Path(fs::path("never") / "there")));
  EXPECT_TRUE(Exists("keep/sibling.txt"));
}

#ifdef _WIN32
// DeleteTree does most of its work with the file API; whatever the tree holds, its result and
// what it leaves must be the shell's own.
TEST_F(FileTree, DeleteTreeEndsAsTheShellsDeleteDoes) {
  const fs::path deep = fs::path("t") / "a" / "b" / "z.sol";
  // A read-only file deep in the tree, then one held open without sharing (0).
  for (DWORD attributes : {DWORD{FILE_ATTRIBUTE_READONLY}, DWORD{0}}) {
    SCOPED_TRACE(attributes);
    std::vector<std::string> left[2];
    bool result[2];
    for (int shell = 0; shell < 2; ++shell) {
      const fs::path root = temp.path() / (shell ? "shell" : "ours");
      WriteFileBytes(root / "t" / "a" / "first.sol", "1");
      WriteFileBytes(root / deep, "special");
      const std::wstring special = (root / deep).wstring();
      if (attributes != 0) SetFileAttributesW(special.c_str(), attributes);
      HANDLE held = attributes != 0 ? INVALID_HANDLE_VALUE
                                    : CreateFileW(special.c_str(), GENERIC_READ, 0, nullptr,
                                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
      if (shell) {
        std::wstring from = (root / "t").wstring();
        from.push_back(L'\0');
        SHFILEOPSTRUCTW operation{};
        operation.wFunc = FO_DELETE;
        operation.pFrom = from.c_str();
        operation.fFlags = FOF_SILENT | FOF_NOCONFIRMATION | FOF_NOERRORUI;
        const int code = SHFileOperationW(&operation);
        result[shell] = code == 0 || code == 2 || code == 124 || code == 1026;
      } else {
        result[shell] = platform->DeleteTree(PathToUtf8(root / "t"));
      }
      if (held != INVALID_HANDLE_VALUE) CloseHandle(held);
      for (const auto& entry : fs::recursive_directory_iterator(root)) {
        left[shell].push_back(fs::relative(entry.path(), root).generic_string());
        SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
      }
      std::sort(left[shell].begin(), left[shell].end());
      fs::remove_all(root);
    }
    EXPECT_EQ(result[0], result[1]);
    EXPECT_EQ(left[0], left[1]);
  }
}
#else
TEST_F(FileTree, LinksInsideATreeAreRemovedNotFollowed) {
  Write("outside/precious.txt", "p");
  Write("tree/file.txt", "f");
  fs::create_directory_symlink(temp.path() / "outside", temp.path() / "tree" / "link");
  EXPECT_EQ(platform->TreeSize(Path("tree")), 1u);
  EXPECT_TRUE(platform->RemoveTreeByAge(Path("tree"), 0, UINT64_MAX / kSecond));
  EXPECT_TRUE(Exists("outside/precious.txt"));
  Write("tree2/file.txt", "f");
  fs::create_directory_symlink(temp.path() / "outside", temp.path() / "tree2" / "link");
  EXPECT_TRUE(platform->DeleteTree(Path("tree2")));
  EXPECT_FALSE(Exists("tree2"));
  EXPECT_TRUE(Exists("outside/precious.txt"));
}
#endif

TEST_F(FileTree, RemoveTreeByAgeDeletesOnlyFilesStrictlyInsideTheWindow) {
  SetFileTreeNowForTesting(kNow);
  const uint64_t minAge = 60;
  const uint64_t maxAge = 3600;
  struct Case {
    const char* name;
    uint64_t lastWrite;
    bool removed;
  };
  const Case cases[] = {
      {"exactly-min-age", kNow - minAge * kSecond, false},
      {"just-over-min-age", kNow - minAge * kSecond - 1, true},
      {"just-under-max-age", kNow - maxAge * kSecond + 1, true},
      {"exactly-max-age", kNow - maxAge * kSecond, false},
      {"from-the-future", kNow + kSecond, false},
  };
  for (const Case& testCase : cases) {
    fs::path file = fs::path("cache") / "sub" / testCase.name;
    Write(file, "x");
    SetLastWriteTime(temp.path() / file, testCase.lastWrite);
  }
  Write("cache/emptied/old.bin", "o");
  SetLastWriteTime(temp.path() / "cache/emptied/old.bin", kNow - 120 * kSecond);

  EXPECT_TRUE(platform->RemoveTreeByAge(Path("cache"), minAge, maxAge));
  for (const Case& testCase : cases) {
    EXPECT_EQ(Exists(fs::path("cache") / "sub" / testCase.name), !testCase.removed)
        << testCase.name;
  }
  EXPECT_FALSE(Exists("cache/emptied"));  // emptied sub-folders go
  EXPECT_TRUE(Exists("cache"));           // the top folder still holds kept files

  // The age is unsigned: a file from the future goes once the maximum exceeds its huge age, and
  // the emptied top folder with it.
  Write("future/file", "z");
  SetLastWriteTime(temp.path() / "future/file", kNow + kSecond);
  EXPECT_TRUE(platform->RemoveTreeByAge(Path("future"), 0, UINT64_MAX / kSecond));
  EXPECT_FALSE(Exists("future"));
  EXPECT_FALSE(platform->RemoveTreeByAge(Path("missing"), 0, 1'000'000'000));
}

TEST_F(FileTree, TreeSizeAddsEveryFileBelowAFolder) {
  Write("site/a.sol", std::string(100, 'a'));
  Write("site/deep/er/b.sol", std::string(23, 'b'));
  Write("site/deep/c", "");
  EXPECT_EQ(platform->TreeSize(Path("site")), 123u);
  EXPECT_EQ(platform->TreeSize(Path("site/a.sol")), 100u);
  EXPECT_EQ(platform->TreeSize(Path("missing")), 0u);
}

TEST_F(FileTree, CreateFolderCreatesAtMostTheMissingParent) {
  EXPECT_TRUE(platform->CreateFolder(Path("parent"), "child"));
  EXPECT_TRUE(platform->CreateFolder(Path("parent"), "child"));  // already there
  EXPECT_TRUE(Exists("parent/child"));
  // Grandparent missing: the first call only makes the grandparent.
  EXPECT_FALSE(platform->CreateFolder(Path(fs::path("g") / "p"), "c"));
  EXPECT_TRUE(Exists("g"));
  EXPECT_FALSE(Exists("g/p"));
  EXPECT_TRUE(platform->CreateFolder(Path(fs::path("g") / "p"), "c"));
  EXPECT_TRUE(Exists("g/p/c"));
  // "." names the parent itself, which is then created as well (Windows drops "." components).
  EXPECT_TRUE(platform->CreateFolder(Path(fs::path("g2") / "p"), "."));
  EXPECT_TRUE(Exists("g2/p"));
  Write("file", "f");
  EXPECT_FALSE(platform->CreateFolder(Path("file/x"), "y"));
}

TEST_F(FileTree, ListEntriesPutsNumericNamesLastByValue) {
  for (const char* name : {"B", "a", "Z", "0100", "1e3", "-5", "x1", "\xC3\xA9t\xC3\xA9",
                           "100000000000000000000", "99999999999999999999"}) {
    Write(fs::path("more") / PathFromUtf8(name), "");
  }
  fs::create_directories(temp.path() / "more" / "99");  // folders are listed too
  EXPECT_EQ(platform->ListEntries(Path("more")),
            (std::vector<std::string>{"-5", "1e3", "B", "Z", "a", "x1", "\xC3\xA9t\xC3\xA9", "99",
                                      "0100", "99999999999999999999", "100000000000000000000"}));
  EXPECT_EQ(platform->ListEntries(Path("missing")), std::vector<std::string>{});
}
