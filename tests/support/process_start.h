#pragma once

#include <chrono>
#include <functional>
#include <string>

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
  // "starting P failed after N attempts with error E: <the system's text>", or "started P".
  std::string Describe() const;
};

// Errors after which a second attempt can succeed: the internal error (1359), not enough memory
// (8) and not enough resources (1450). Wine reports them now and then on a busy machine.
bool IsTransientStartError(unsigned long error);

using RetryWait = std::function<void(std::chrono::milliseconds)>;

// Calls startOnce (which returns 0 or a Windows error code) until it starts the program, fails
// with an error that is not transient, or has been tried kStartAttempts times; waits longer
// before each retry.
StartResult StartWithRetries(const std::string& program,
                             const std::function<unsigned long()>& startOnce,
                             const RetryWait& wait = nullptr);

inline constexpr int kStartAttempts = 6;

#ifdef _WIN32
// CreateProcessW with the retries above. When it starts, *process holds handles the caller
// closes.
[[nodiscard]] StartResult StartProcess(const std::wstring& commandLine, bool inheritHandles,
                                       DWORD creationFlags, STARTUPINFOW* startup,
                                       PROCESS_INFORMATION* process);
#endif
