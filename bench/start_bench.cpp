// Launch to painted sheet: the settings manager against a property sheet with one empty page,
// alternately, in the same run and the same Wine prefix.
//
//   start_bench.exe PROGRAM.exe EMPTY_SHEET.exe [RUNS [DATA_ROOT PROFILE...]]
//                                                  (default 11 runs of each)
//
// A sheet counts as painted when its window and its current page are visible and neither has
// anything left to paint. Each program is then closed as the user would close it, and the next
// launch starts once it has ended. Prints the medians in milliseconds and their ratio.
//
// Given the player's data root (which must not exist) and profiles (data-root folders seeded
// elsewhere, for example by start_phases_bench), the program is launched once on each profile
// in every run: the profile is renamed into place for the launch and back afterwards.

// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "bench_timing.h"

using bench::Median;

namespace {

struct Found {
  DWORD processId;
  HWND sheet;
};

BOOL CALLBACK FindSheetOfProcess(HWND window, LPARAM parameter) {
  auto* found = reinterpret_cast<Found*>(parameter);
  DWORD processId = 0;
  GetWindowThreadProcessId(window, &processId);
  wchar_t className[16] = {};
  GetClassNameW(window, className, 16);
  if (processId == found->processId && std::wstring(className) == L"#32770" &&
      IsWindowVisible(window)) {
    found->sheet = window;
    return FALSE;
  }
  return TRUE;
}

bool NothingLeftToPaint(HWND window) {
  return window != nullptr && IsWindowVisible(window) && !GetUpdateRect(window, nullptr, FALSE);
}

// Milliseconds from CreateProcess to the painted sheet, or a negative number on failure.
double LaunchToPaint(const std::wstring& program) {
  std::wstring commandLine = L"\"" + program + L"\"";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  const auto start = std::chrono::steady_clock::now();
  // Wine can refuse a process start now and then on a loaded machine; that is not our time.
  bool started = false;
  for (int attempt = 0; attempt < 5 && !started; ++attempt) {
    started = CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr,
                             nullptr, &startup, &process) != 0;
  }
  if (!started) return -1;
  double elapsed = -1;
  Found found{process.dwProcessId, nullptr};
  while (WaitForSingleObject(process.hProcess, 0) == WAIT_TIMEOUT) {
    if (found.sheet == nullptr) EnumWindows(FindSheetOfProcess, reinterpret_cast<LPARAM>(&found));
    if (found.sheet != nullptr) {
      HWND page = reinterpret_cast<HWND>(SendMessageW(found.sheet, PSM_GETCURRENTPAGEHWND, 0, 0));
      if (NothingLeftToPaint(found.sheet) && NothingLeftToPaint(page)) {
        elapsed =
            std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                .count();
        break;
      }
    }
    Sleep(1);
  }
  if (found.sheet != nullptr) PostMessageW(found.sheet, WM_SYSCOMMAND, SC_CLOSE, 0);
  if (WaitForSingleObject(process.hProcess, 10000) != WAIT_OBJECT_0) {
    TerminateProcess(process.hProcess, 1);
    WaitForSingleObject(process.hProcess, INFINITE);
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return elapsed;
}

// Renames a folder to another name for as long as it lives (a seeded profile into the data root
// for one launch, the prefix's own data root aside for the whole run).
class ProfileInPlace {
 public:
  ProfileInPlace(const wchar_t* profile, const wchar_t* dataRoot)
      : profile_(profile), dataRoot_(dataRoot) {
    moved_ = MoveFileW(profile_, dataRoot_) != 0;
  }
  ~ProfileInPlace() {
    if (moved_) MoveFileW(dataRoot_, profile_);
  }
  bool moved() const { return moved_; }

 private:
  const wchar_t* profile_;
  const wchar_t* dataRoot_;
  bool moved_;
};

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 3 || argc == 5) {
    std::fprintf(stderr,
                 "usage: start_bench PROGRAM.exe EMPTY_SHEET.exe [RUNS [DATA_ROOT PROFILE...]]\n");
    return 2;
  }
  const int runs = argc > 3 ? _wtoi(argv[3]) : 11;
  const wchar_t* dataRoot = argc > 5 ? argv[4] : nullptr;
  // Without profiles the program starts on whatever the prefix holds.
  std::vector<const wchar_t*> profiles;
  for (int arg = 5; arg < argc; ++arg) profiles.push_back(argv[arg]);
  if (profiles.empty()) profiles.push_back(nullptr);
  // The profiles move into the data root's place, so its parent folder must be there.
  if (dataRoot != nullptr) {
    const std::wstring path(dataRoot);
    const size_t cut = path.find_last_of(L'\\');
    if (cut != std::wstring::npos) CreateDirectoryW(path.substr(0, cut).c_str(), nullptr);
  }
  // The prefix's own data root, if it has one, waits beside the profiles until the end.
  const std::wstring aside = dataRoot != nullptr ? std::wstring(dataRoot) + L".start-bench" : L"";
  std::optional<ProfileInPlace> ownDataRoot;
  if (dataRoot != nullptr && GetFileAttributesW(dataRoot) != INVALID_FILE_ATTRIBUTES) {
    ownDataRoot.emplace(dataRoot, aside.c_str());
    if (!ownDataRoot->moved()) {
      std::fprintf(stderr, "start_bench: cannot move %ls aside\n", dataRoot);
      return 1;
    }
  }

  // One launch of each first, not counted: the files they read come into the cache.
  LaunchToPaint(argv[2]);
  for (const wchar_t* profile : profiles) {
    std::optional<ProfileInPlace> inPlace;
    if (profile != nullptr) inPlace.emplace(profile, dataRoot);
    LaunchToPaint(argv[1]);
  }
  std::vector<double> empty;
  std::vector<std::vector<double>> program(profiles.size());
  std::vector<std::vector<double>> ratios(profiles.size());  // each launch against the empty
  // sheet's launch of the same run, which shares the machine's load
  for (int run = 0; run < runs; ++run) {
    const double emptyTime = LaunchToPaint(argv[2]);
    empty.push_back(emptyTime);
    for (size_t index = 0; index < profiles.size(); ++index) {
      std::optional<ProfileInPlace> inPlace;
      if (profiles[index] != nullptr) {
        inPlace.emplace(profiles[index], dataRoot);
        if (!inPlace->moved()) {
          std::fprintf(stderr, "start_bench: cannot move profile %ls into place (error %lu)\n",
                       profiles[index], GetLastError());
          return 1;
        }
      }
      const double programTime = LaunchToPaint(argv[1]);
      if (programTime < 0 || emptyTime < 0) {
        std::fprintf(stderr, "start_bench: a program did not show its sheet\n");
        return 1;
      }
      program[index].push_back(programTime);
      ratios[index].push_back(programTime / emptyTime);
    }
  }
  const double emptyMedian = Median(empty);
  std::printf("launch to painted sheet, median of %d runs (ms)\n", runs);
  std::printf("  empty sheet        %8.1f\n", emptyMedian);
  for (size_t index = 0; index < profiles.size(); ++index) {
    const double programMedian = Median(program[index]);
    if (profiles[index] != nullptr) std::printf("profile %ls\n", profiles[index]);
    std::printf("  settings manager   %8.1f\n", programMedian);
    std::printf("  ratio of medians   %8.2fx\n", programMedian / emptyMedian);
    std::printf("  median of ratios   %8.2fx\n", Median(ratios[index]));
    if (index > 0) {
      std::printf("  more than the first profile %8.1f\n", programMedian - Median(program[0]));
    }
  }
  return 0;
}
