#include "support/process_runner.h"

#include <filesystem>

#include "support/temp_folder.h"

#ifdef _WIN32
#include <windows.h>

#include "platform/win32/utf16.h"
#else
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

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
  if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                     nullptr, &startup, &process)) {
    WaitForSingleObject(process.hProcess, INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process.hProcess, &exitCode);
    result.exitCode = static_cast<int>(exitCode);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  CloseHandle(startup.hStdInput);
  CloseHandle(startup.hStdOutput);
  CloseHandle(startup.hStdError);
  result.out = ReadFileBytes(folder.path() / "out");
  result.err = ReadFileBytes(folder.path() / "err");
  return result;
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
  ProcessResult result;
  pid_t child = fork();
  if (child == 0) {
    int in = open((folder.path() / "in").c_str(), O_RDONLY);
    int out = open((folder.path() / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    int err = open((folder.path() / "err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(in, 0);
    dup2(out, 1);
    dup2(err, 2);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(program.c_str()));
    for (const std::string& argument : arguments)
      argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  int status = 0;
  if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status)) {
    result.exitCode = WEXITSTATUS(status);
  }
  result.out = ReadFileBytes(folder.path() / "out");
  result.err = ReadFileBytes(folder.path() / "err");
  return result;
}

std::string BesideTestProgram(const std::string& relativePath) {
  fs::path self = fs::read_symlink("/proc/self/exe");
  return (self.parent_path() / relativePath).lexically_normal().string();
}

#endif
