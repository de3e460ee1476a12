#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// Facts and effects of the operating system that the program depends on and that tests must be
// able to vary: registry, version, administrator membership, interface language, processes,
// elevation, opening addresses, and the folders the system names. The Windows implementation
// calls the real API; tests use a scripted one.
class SMSystem {
 public:
  enum class RegistryRoot {
    // HKEY_LOCAL_MACHINE in the 32-bit view, where the player's 32-bit installers write.
    LocalMachine32,
    // HKEY_CURRENT_USER.
    CurrentUser,
  };
  // One registry value read into a buffer of bufferBytes bytes, as RegQueryValueEx does it: a
  // value larger than the buffer is a failed read. ansi selects the 8-bit functions.
  struct RegistryQuery {
    RegistryRoot root;
    std::string subKey;
    std::string valueName;
    uint32_t bufferBytes;
    bool ansi = false;
  };
  // CSIDL numbers of the folders the program asks for.
  static constexpr int kRoamingAppData = 26;  // CSIDL_APPDATA
  static constexpr int kLocalAppData = 28;    // CSIDL_LOCAL_APPDATA
  static constexpr int kCreateFlag = 0x8000;  // CSIDL_FLAG_CREATE

  virtual ~SMSystem() = default;

  // True when the key can be opened for querying values.
  virtual bool OpenRegistryKey(RegistryRoot root, const std::string& subKey) = 0;
  // The raw bytes of the value, or nothing when the key or value cannot be read.
  virtual std::optional<std::vector<uint8_t>> QueryRegistryValue(const RegistryQuery& query) = 0;

  virtual bool IsWindows8OrLater() = 0;
  virtual bool IsUserAdmin() = 0;
  // GetUserDefaultUILanguage: primary language in the low 10 bits, sub-language above.
  virtual uint16_t UserDefaultUILanguage() = 0;
  // The whole command line of this process, program path included (UTF-8).
  virtual std::string CommandLine() = 0;
  // The full path of the running program (UTF-8).
  virtual std::string ModulePath() = 0;

  // Starts commandLine with no window and waits up to timeoutMs; the exit code (259 while the
  // process is still running), or nothing when the process could not be started.
  virtual std::optional<uint32_t> RunAndWait(const std::string& commandLine,
                                             uint32_t timeoutMs) = 0;
  // Asks the shell to start program with parameters elevated ("runas"); true when it started.
  virtual bool LaunchElevated(const std::string& program, const std::string& parameters) = 0;
  // Ends this process at once.
  [[noreturn]] virtual void ExitProcess(int status) = 0;
  // Opens an address with the shell's "open" verb; a null address makes the same call.
  virtual void OpenUrl(void* ownerWindow, const char* address) = 0;

  // SHGetFolderPath for a CSIDL (with kCreateFlag when wanted); nothing when the call fails.
  virtual std::optional<std::string> ShellFolderPath(int csidl) = 0;
  // The 32-bit system folder (GetSystemWow64Directory); empty where there is none.
  virtual std::string SystemWow64Directory() = 0;
  // The native system folder (GetSystemDirectory); empty when it cannot be had.
  virtual std::string SystemDirectory() = 0;
  // The key by which the system's list views order a text in the user's locale: comparing two
  // keys byte by byte orders the texts as a sorted list view does. Elsewhere the text itself.
  virtual std::string DisplaySortKey(const std::string& text) { return text; }
  // The text with upper and lower case made alike, as the system's list views match a typed
  // text against their rows. Elsewhere only the ASCII letters are lowered.
  virtual std::string FoldCase(const std::string& text);
};

// Reads a 32-bit registry number the way the player's probes do: a zeroed 4-byte buffer,
// nothing when the read fails (a longer value does not fit and fails).
std::optional<uint32_t> QueryRegistryNumber(SMSystem& system, SMSystem::RegistryRoot root,
                                            const std::string& subKey,
                                            const std::string& valueName);
