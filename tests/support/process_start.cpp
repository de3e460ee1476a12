#include "support/process_start.h"

#include <cstdlib>
#include <cstring>
#include <thread>

#ifdef _WIN32
#include "platform/win32/utf16.h"
#endif

std::chrono::milliseconds ScaledTimeout(std::chrono::milliseconds limit) {
  const char* text = std::getenv("VP_TIMEOUT_SCALE");
  double scale = text != nullptr ? std::atof(text) : 1.0;
  if (!(scale > 0.0)) scale = 1.0;
  return std::chrono::milliseconds(
      static_cast<long long>(static_cast<double>(limit.count()) * scale));
}

namespace {

std::string SystemErrorText(unsigned long error) {
#ifdef _WIN32
  wchar_t* text = nullptr;
  DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::wstring message(text != nullptr ? text : L"", length);
  LocalFree(text);
  while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r' ||
                              message.back() == L' ' || message.back() == L'.')) {
    message.pop_back();
  }
  return ToUtf8(message).value_or("");
#else
  return std::strerror(static_cast<int>(error));
#endif
}

}  // namespace

std::string StartResult::Describe() const {
  if (started()) return "started " + program;
  return "starting " + program + " failed after " + std::to_string(attempts) +
         (attempts == 1 ? " attempt" : " attempts") + " with error " + std::to_string(error) +
         ": " + SystemErrorText(error);
}

bool IsTransientStartError(unsigned long error) {
  return error == 1359 || error == 8 || error == 1450;
}

StartResult StartWithRetries(const std::string& program,
                             const std::function<unsigned long()>& startOnce,
                             const RetryWait& wait) {
  StartResult result{program};
  std::chrono::milliseconds pause(100);
  while (true) {
    ++result.attempts;
    result.error = startOnce();
    if (result.started() || !IsTransientStartError(result.error) ||
        result.attempts == kStartAttempts) {
      return result;
    }
    if (wait)
      wait(pause);
    else
      std::this_thread::sleep_for(pause);
    pause *= 2;
  }
}

#ifdef _WIN32

StartResult StartProcess(const std::wstring& commandLine, bool inheritHandles, DWORD creationFlags,
                         STARTUPINFOW* startup, PROCESS_INFORMATION* process) {
  return StartWithRetries(ToUtf8(commandLine).value_or("?"), [&]() -> unsigned long {
    // CreateProcessW may write into the command line, so every attempt gets a fresh copy.
    std::wstring writable = commandLine;
    if (CreateProcessW(nullptr, writable.data(), nullptr, nullptr, inheritHandles, creationFlags,
                       nullptr, nullptr, startup, process)) {
      return 0;
    }
    DWORD error = GetLastError();
    return error != 0 ? error : ERROR_INTERNAL_ERROR;
  });
}

#endif
