#include "support/fake_system.h"

namespace {

std::string KeyName(SMSystem::RegistryRoot root, const std::string& subKey) {
  return (root == SMSystem::RegistryRoot::LocalMachine32 ? "HKLM32\\" : "HKCU\\") + subKey;
}

}  // namespace

void FakeSystem::AddRegistryKey(RegistryRoot root, const std::string& subKey) {
  registry_[KeyName(root, subKey)];
}

void FakeSystem::SetRegistryValue(RegistryRoot root, const std::string& subKey,
                                  const std::string& name, std::vector<uint8_t> bytes) {
  registry_[KeyName(root, subKey)][name] = std::move(bytes);
}

void FakeSystem::SetRegistryNumber(RegistryRoot root, const std::string& subKey,
                                   const std::string& name, uint32_t number) {
  SetRegistryValue(root, subKey, name,
                   {static_cast<uint8_t>(number), static_cast<uint8_t>(number >> 8),
                    static_cast<uint8_t>(number >> 16), static_cast<uint8_t>(number >> 24)});
}

void FakeSystem::SetRegistryText(RegistryRoot root, const std::string& subKey,
                                 const std::string& name, const std::string& asciiText) {
  std::vector<uint8_t> bytes;
  for (char c : asciiText) {
    bytes.push_back(static_cast<uint8_t>(c));
    bytes.push_back(0);
  }
  bytes.push_back(0);
  bytes.push_back(0);
  SetRegistryValue(root, subKey, name, std::move(bytes));
}

void FakeSystem::AddPlayer(PlayerKind kind, const std::string& version) {
  const auto machine = RegistryRoot::LocalMachine32;
  AddRegistryKey(machine, PlayerKey(kind));
  if (!version.empty()) SetRegistryText(machine, PlayerKey(kind), "Version", version);
}

bool FakeSystem::OpenRegistryKey(RegistryRoot root, const std::string& subKey) {
  return registry_.count(KeyName(root, subKey)) != 0;
}

std::optional<std::vector<uint8_t>> FakeSystem::QueryRegistryValue(const RegistryQuery& query) {
  auto key = registry_.find(KeyName(query.root, query.subKey));
  if (key == registry_.end()) return std::nullopt;
  auto value = key->second.find(query.valueName);
  if (value == key->second.end()) return std::nullopt;
  if (value->second.size() > query.bufferBytes) return std::nullopt;  // ERROR_MORE_DATA
  return value->second;
}

uint16_t FakeSystem::UserDefaultUILanguage() {
  size_t index = static_cast<size_t>(uiLanguageQueries);
  ++uiLanguageQueries;
  if (index >= uiLanguages.size()) index = uiLanguages.size() - 1;
  return uiLanguages[index];
}

std::optional<uint32_t> FakeSystem::RunAndWait(const std::string& line, uint32_t timeoutMs) {
  launches.push_back({line, timeoutMs});
  if (!launchStarts) return std::nullopt;
  for (const auto& [prefix, code] : exitCodes) {
    if (line.rfind(prefix, 0) == 0) return code;
  }
  return 0u;
}

bool FakeSystem::LaunchElevated(const std::string& program, const std::string& parameters) {
  elevations.push_back(program + "|" + parameters);
  return elevationGranted;
}

void FakeSystem::ExitProcess(int status) {
  throw FakeProcessExit{status};
}

std::optional<std::string> FakeSystem::ShellFolderPath(int csidl) {
  shellFolderQueries.push_back(csidl);
  if (shellFolderQueryFails) return std::nullopt;
  int folder = csidl & ~kCreateFlag;
  if (folder == kLocalAppData) return localAppData;
  if (folder == kRoamingAppData) return roamingAppData;
  return std::nullopt;
}
