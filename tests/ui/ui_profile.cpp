#include "ui_profile.h"

#include <windows.h>

#include "platform/win32/utf16.h"

namespace {

std::wstring KeyOf(PlayerKind kind) {
  return ToUtf16(PlayerKey(kind)).value_or(L"");
}

}  // namespace

UiProfile::UiProfile() : platform_(std::make_unique<Win32PlatformServices>(system_)) {
  Clear();
}

UiProfile::~UiProfile() {
  Clear();
}

void UiProfile::Clear() {
  for (PlayerKind kind : {PlayerKind::ActiveX, PlayerKind::Npapi, PlayerKind::Ppapi}) {
    RegDeleteKeyExW(HKEY_LOCAL_MACHINE, KeyOf(kind).c_str(), KEY_WOW64_32KEY, 0);
  }
  platform_->DeleteTree(platform_->PlayerDataRoot());
}

void UiProfile::AddPlayer(PlayerKind kind, const std::wstring& version, bool partner) {
  HKEY key = nullptr;
  if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, KeyOf(kind).c_str(), 0, nullptr, 0,
                      KEY_SET_VALUE | KEY_WOW64_32KEY, nullptr, &key, nullptr) != ERROR_SUCCESS) {
    return;
  }
  RegSetValueExW(key, L"Version", 0, REG_SZ, reinterpret_cast<const BYTE*>(version.c_str()),
                 static_cast<DWORD>((version.size() + 1) * sizeof(wchar_t)));
  DWORD partnerFlag = partner ? 1 : 0;
  RegSetValueExW(key, L"isPartner", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&partnerFlag),
                 sizeof partnerFlag);
  RegCloseKey(key);
}

bool UiProfile::SetGlobal(const SettingValue& value) {
  // A fresh manager each time: it reads the file as it is now, like a second program.
  SMSettingsManager settings(*platform_);
  return settings.SetValue(SMSettingsManager::MasterDomain(), value);
}
