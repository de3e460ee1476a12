// Stands in for the player's update service and uninstallers in the Windows tests: appends its
// own command line and a line end to the file named by VP_PLAYER_TOOL_LOG, then exits with the
// number found in "<its own path>.exitcode" (0 when there is none). The tests' paths are ASCII.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

int main() {
  if (const wchar_t* logPath = _wgetenv(L"VP_PLAYER_TOOL_LOG")) {
    if (std::FILE* log = _wfopen(logPath, L"ab")) {
      std::fprintf(log, "%s\n", GetCommandLineA());
      std::fclose(log);
    }
  }
  wchar_t selfPath[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, selfPath, MAX_PATH);
  unsigned long exitCode = 0;
  if (std::FILE* codeFile = _wfopen((std::wstring(selfPath) + L".exitcode").c_str(), L"r")) {
    if (std::fscanf(codeFile, "%lu", &exitCode) != 1) exitCode = 0;
    std::fclose(codeFile);
  }
  return static_cast<int>(exitCode);
}
