// Stands in for the player's update service and uninstallers in the Windows tests: appends its
// own command line (UTF-8) and a line end to the file named by VP_PLAYER_TOOL_LOG, then exits
// with the number found in "<its own path>.exitcode" (0 when there is none).
#include <windows.h>

#include <cstdio>
#include <string>

namespace {

std::string Utf8(const wchar_t* text) {
  int length = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (length <= 0) return std::string();
  std::string utf8(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), length, nullptr, nullptr);
  utf8.pop_back();
  return utf8;
}

}  // namespace

int main() {
  wchar_t logPath[MAX_PATH] = {};
  DWORD logLength = GetEnvironmentVariableW(L"VP_PLAYER_TOOL_LOG", logPath, MAX_PATH);
  if (logLength > 0 && logLength < MAX_PATH) {
    if (std::FILE* log = _wfopen(logPath, L"ab")) {
      std::string line = Utf8(GetCommandLineW()) + "\n";
      std::fwrite(line.data(), 1, line.size(), log);
      std::fclose(log);
    }
  }
  wchar_t selfPath[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, selfPath, MAX_PATH);
  unsigned long exitCode = 0;
  std::wstring codePath = std::wstring(selfPath) + L".exitcode";
  if (std::FILE* codeFile = _wfopen(codePath.c_str(), L"r")) {
    if (std::fscanf(codeFile, "%lu", &exitCode) != 1) exitCode = 0;
    std::fclose(codeFile);
  }
  return static_cast<int>(exitCode);
}
