#include "support/process_runner.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "support/process_start.h"
#include "support/temp_folder.h"

#ifdef _WIN32
#include <windows.h>

#include "platform/win32/utf16.h"
#else
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace fs = std::filesystem;

namespace {

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
                         const std::string& input, std::chrono::milliseconds timeLimit) {
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
    const std::chrono::milliseconds limit = ScaledTimeout(timeLimit);
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

namespace {

// Waits for the child until the limit; true with its status when it ended in time.
bool WaitForChild(pid_t child, std::chrono::milliseconds limit, int* status) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (true) {
    pid_t ended = waitpid(child, status, WNOHANG);
    if (ended == child || ended < 0) return ended == child;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
}

}  // namespace

ProcessResult RunProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const std::string& input, std::chrono::milliseconds timeLimit) {
  TempFolder folder;
  WriteFileBytes(folder.path() / "in", input);
  const std::string in = (folder.path() / "in").string();
  const std::string out = (folder.path() / "out").string();
  const std::string err = (folder.path() / "err").string();
  std::vector<char*> argv;
  argv.push_back(const_cast<char*>(program.c_str()));
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  // The child reports a failed exec through this pipe; a successful exec closes it unwritten.
  int startPipe[2];
  if (pipe2(startPipe, O_CLOEXEC) != 0) return Reported({.failure = "pipe2 failed"});
  ProcessResult result;
  pid_t child = fork();
  if (child == 0) {
    close(startPipe[0]);
    dup2(open(in.c_str(), O_RDONLY), 0);
    dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
    execv(program.c_str(), argv.data());
    int error = errno;
    (void)!write(startPipe[1], &error, sizeof error);
    _exit(127);
  }
  close(startPipe[1]);
  int startError = child < 0 ? errno : 0;
  if (child > 0 && read(startPipe[0], &startError, sizeof startError) != sizeof startError) {
    startError = 0;
  }
  close(startPipe[0]);
  if (startError != 0) {
    if (child > 0) waitpid(child, nullptr, 0);
    result.failure = StartResult{program, static_cast<unsigned long>(startError), 1}.Describe();
    return Reported(std::move(result));
  }
  const std::chrono::milliseconds limit = ScaledTimeout(timeLimit);
  int status = 0;
  if (!WaitForChild(child, limit, &status)) {
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    result.failure = TimeLimitFailure(program, limit);
  } else if (WIFEXITED(status)) {
    result.exitCode = WEXITSTATUS(status);
  }
  result.out = ReadFileBytes(out);
  result.err = ReadFileBytes(err);
  return Reported(std::move(result));
}

std::string BesideTestProgram(const std::string& relativePath) {
  fs::path self = fs::read_symlink("/proc/self/exe");
  return (self.parent_path() / relativePath).lexically_normal().string();
}

#endif
