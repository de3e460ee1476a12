#include "support/process_runner.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>

#include "support/temp_folder.h"

#ifdef _WIN32
#include "platform/win32/utf16.h"
#else
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

std::chrono::milliseconds ScaledTimeout(std::chrono::milliseconds limit) {
  const char* text = std::getenv("VP_TIMEOUT_SCALE");
  double scale = text != nullptr ? std::atof(text) : 1.0;
  if (!(scale > 0.0)) scale = 1.0;
  return std::chrono::milliseconds(
      static_cast<long long>(static_cast<double>(limit.count()) * scale));
}

std::string StartResult::Describe() const {
#ifdef _WIN32
  wchar_t* text = nullptr;
  DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, error, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::string reason = ToUtf8(std::wstring(text != nullptr ? text : L"", length)).value_or("");
  LocalFree(text);
  reason.erase(reason.find_last_not_of(" .\r\n") + 1);
#else
  std::string reason = std::strerror(static_cast<int>(error));
#endif
  return "starting " + program + " failed after " + std::to_string(attempts) +
         (attempts == 1 ? " attempt" : " attempts") + " with error " + std::to_string(error) +
         ": " + reason;
}

StartResult StartWithRetries(const std::string& program,
                             const std::function<unsigned long()>& startOnce,
                             const std::function<void(std::chrono::milliseconds)>& wait) {
  StartResult result{program};
  for (std::chrono::milliseconds pause(100);; pause *= 2) {
    ++result.attempts;
    result.error = startOnce();
    const bool transient = result.error == 1359 || result.error == 8 || result.error == 1450;
    if (!transient || result.attempts == kStartAttempts) return result;
    wait(pause);
  }
}

namespace {

constexpr std::chrono::milliseconds kRunLimit = std::chrono::minutes(2);

std::string TimeLimitFailure(const std::string& program, std::chrono::milliseconds limit) {
  return program + " did not finish within " + std::to_string(limit.count()) + " ms and was ended";
}

// The caller's test fails with the reason; the caller still gets the result to look at.
ProcessResult Reported(ProcessResult result) {
  if (!result.failure.empty()) ADD_FAILURE() << result.failure;
  return result;
}

}  // namespace

#ifdef _WIN32

StartResult StartProcess(const std::wstring& commandLine, bool inheritHandles, DWORD creationFlags,
                         STARTUPINFOW* startup, PROCESS_INFORMATION* process) {
  return StartWithRetries(
      ToUtf8(commandLine).value_or("?"),
      [&]() -> unsigned long {
        // CreateProcessW may write into the command line, so every attempt gets a fresh copy.
        std::wstring writable = commandLine;
        if (CreateProcessW(nullptr, writable.data(), nullptr, nullptr, inheritHandles,
                           creationFlags, nullptr, nullptr, startup, process)) {
          return 0;
        }
        DWORD error = GetLastError();
        return error != 0 ? error : ERROR_INTERNAL_ERROR;
      },
      [](std::chrono::milliseconds pause) { std::this_thread::sleep_for(pause); });
}

namespace {

std::wstring QuoteArgument(const std::wstring& argument) {
  if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos) return argument;
  std::wstring quoted = L"\"";
  size_t backslashes = 0;
  for (wchar_t c : argument) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    if (c == L'"')
      quoted.append(backslashes * 2 + 1, L'\\');
    else
      quoted.append(backslashes, L'\\');
    backslashes = 0;
    quoted.push_back(c);
  }
  quoted.append(backslashes * 2, L'\\');
  quoted.push_back(L'"');
  return quoted;
}

HANDLE OpenInherited(const fs::path& path, bool write) {
  SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
  return CreateFileW(path.c_str(), write ? GENERIC_WRITE : GENERIC_READ,
                     FILE_SHARE_READ | FILE_SHARE_WRITE, &inherit,
                     write ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& input) {
  TempFolder folder;
  WriteFileBytes(folder.path() / "in", input);
  std::wstring commandLine = QuoteArgument(ToUtf16(program).value_or(L""));
  for (const std::string& argument : arguments) {
    commandLine += L" " + QuoteArgument(ToUtf16(argument).value_or(L""));
  }
  ProcessResult result;
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = OpenInherited(folder.path() / "in", false);
  startup.hStdOutput = OpenInherited(folder.path() / "out", true);
  startup.hStdError = OpenInherited(folder.path() / "err", true);
  PROCESS_INFORMATION process{};
  StartResult start = StartProcess(commandLine, TRUE, CREATE_NO_WINDOW, &startup, &process);
  if (!start.started()) {
    result.failure = start.Describe();
  } else {
    const std::chrono::milliseconds limit = ScaledTimeout(kRunLimit);
    if (WaitForSingleObject(process.hProcess, static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0) {
      DWORD exitCode = 0;
      GetExitCodeProcess(process.hProcess, &exitCode);
      result.exitCode = static_cast<int>(exitCode);
    } else {
      TerminateProcess(process.hProcess, 1);
      WaitForSingleObject(process.hProcess, INFINITE);
      result.failure = TimeLimitFailure(program, limit);
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(startup.hStdInput);
  CloseHandle(startup.hStdOutput);
  CloseHandle(startup.hStdError);
  result.out = ReadFileBytes(folder.path() / "out");
  result.err = ReadFileBytes(folder.path() / "err");
  return Reported(std::move(result));
}

std::string BesideTestProgram(const std::string& relativePath) {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return PathToUtf8((fs::path(path).parent_path() / PathFromUtf8(relativePath)).lexically_normal());
}

#else

ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& input) {
  TempFolder folder;
  WriteFileBytes(folder.path() / "in", input);
  const std::string out = (folder.path() / "out").string();
  const std::string err = (folder.path() / "err").string();
  std::vector<char*> argv{const_cast<char*>(program.c_str())};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 0, (folder.path() / "in").c_str(), O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  posix_spawn_file_actions_addopen(&files, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  // A program that cannot be started is reported here, not by the child's exit status.
  pid_t child = 0;
  int startError = posix_spawn(&child, program.c_str(), &files, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  ProcessResult result;
  if (startError != 0) {
    result.failure = StartResult{program, static_cast<unsigned long>(startError), 1}.Describe();
    return Reported(std::move(result));
  }
  const std::chrono::milliseconds limit = ScaledTimeout(kRunLimit);
  const auto deadline = std::chrono::steady_clock::now() + limit;
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() >= deadline) {
      kill(child, SIGKILL);
      waitpid(child, nullptr, 0);
      result.failure = TimeLimitFailure(program, limit);
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  if (result.failure.empty() && WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
  result.out = ReadFileBytes(out);
  result.err = ReadFileBytes(err);
  return Reported(std::move(result));
}

std::string BesideTestProgram(const std::string& relativePath) {
  fs::path self = fs::read_symlink("/proc/self/exe");
  return (self.parent_path() / relativePath).lexically_normal().string();
}

#endif
