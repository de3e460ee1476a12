#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#endif

// A test's wait limit, multiplied by VP_TIMEOUT_SCALE (a positive number, 1 when unset) so that
// a slow or busy machine can give every wait more time at once.
std::chrono::milliseconds ScaledTimeout(std::chrono::milliseconds limit);

// How starting a program went, over all attempts.
struct StartResult {
  std::string program;
  // 0 when the program started; otherwise the last attempt's system error code.
  unsigned long error = 0;
  int attempts = 0;

  bool started() const { return error == 0; }
  // "starting P failed after N attempts with error E: <the system's text>".
  std::string Describe() const;
};

inline constexpr int kStartAttempts = 6;

// Calls startOnce (which returns 0 or a Windows error code) until it starts the program, fails
// with an error after which a second attempt cannot succeed, or has been tried kStartAttempts
// times; waits longer before each retry. Wine reports the internal error (1359), not enough
// memory (8) and not enough resources (1450) now and then on a busy machine.
StartResult StartWithRetries(const std::string& program,
                             const std::function<unsigned long()>& startOnce,
                             const std::function<void(std::chrono::milliseconds)>& wait);

#ifdef _WIN32
// CreateProcessW with the retries above. When it starts, *process holds handles the caller
// closes.
[[nodiscard]] StartResult StartProcess(const std::wstring& commandLine, bool inheritHandles,
                                       DWORD creationFlags, STARTUPINFOW* startup,
                                       PROCESS_INFORMATION* process);
#endif

// What a finished child process left behind.
struct ProcessResult {
  int exitCode = -1;
  std::string out;
  std::string err;
  // Empty when the program ran to its end; otherwise why not (it could not be started, with the
  // error and the attempts, or it ran past its time limit and was ended).
  std::string failure;
};

// Runs program with arguments, feeding input on its standard input, and waits for it, at most
// two minutes (scaled by VP_TIMEOUT_SCALE). A program that cannot be started or does not finish
// in time also fails the calling test, with the reason.
ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& input = "");

// A file next to the running test program, named by a path relative to its folder.
std::string BesideTestProgram(const std::string& relativePath);
