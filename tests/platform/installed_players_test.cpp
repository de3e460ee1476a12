#include "platform/installed_players.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/fake_system.h"

namespace {

constexpr SMSystem::RegistryRoot kHklm32 = SMSystem::RegistryRoot::LocalMachine32;
const char* const kPepper = "SOFTWARE\\Tessaline\\VantrelPlayerPepper";
const char* const kPlugin = "SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
const char* const kActiveX = "SOFTWARE\\Tessaline\\VantrelPlayerActiveX";

// A REG_SZ as Windows stores it, with or without its terminating zero.
std::vector<uint8_t> Utf16Bytes(const std::u16string& text, bool terminated = true) {
  std::vector<uint8_t> bytes;
  for (char16_t unit : text) {
    bytes.push_back(static_cast<uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<uint8_t>(unit >> 8));
  }
  if (terminated) bytes.insert(bytes.end(), {0, 0});
  return bytes;
}

}  // namespace

TEST(InstalledPlayers, ProbeReadsIsPartnerAsAFourByteNumber) {
  struct Case {
    const char* what;
    bool keyExists;
    std::optional<std::vector<uint8_t>> isPartner;
    PlayerProbe expected;
  };
  const Case cases[] = {
      {"no key", false, std::nullopt, PlayerNotInstalled},
      {"key without isPartner", true, std::nullopt, PlayerInstalled},
      {"DWORD 1", true, std::vector<uint8_t>{1, 0, 0, 0}, PlayerInstalledPartner},
      {"DWORD 0", true, std::vector<uint8_t>{0, 0, 0, 0}, PlayerInstalled},
      {"DWORD 2", true, std::vector<uint8_t>{2, 0, 0, 0}, PlayerInstalled},
      {"DWORD 0x101", true, std::vector<uint8_t>{1, 1, 0, 0}, PlayerInstalled},
      {"string \"1\" (reads as 0x31)", true, Utf16Bytes(u"1"), PlayerInstalled},
      {"string \"true\" (too long)", true, Utf16Bytes(u"true"), PlayerInstalled},
      {"QWORD 1 (too long)", true, std::vector<uint8_t>{1, 0, 0, 0, 0, 0, 0, 0}, PlayerInstalled},
  };
  for (const Case& c : cases) {
    FakeSystem system;
    if (c.keyExists) system.AddRegistryKey(kHklm32, kPlugin);
    if (c.isPartner) system.SetRegistryValue(kHklm32, kPlugin, "isPartner", *c.isPartner);
    EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), c.expected) << c.what;
    EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Ppapi), PlayerNotInstalled) << c.what;
    EXPECT_EQ(ProbePlayerKey(system, PlayerKind::ActiveX), PlayerNotInstalled) << c.what;
  }
}

TEST(InstalledPlayers, EachKindHasItsOwnKeyInThe32BitView) {
  FakeSystem system;
  system.SetRegistryNumber(kHklm32, kPepper, "isPartner", 1);
  system.AddRegistryKey(kHklm32, kActiveX);
  // The same key under the current user is not an installed player.
  system.AddRegistryKey(SMSystem::RegistryRoot::CurrentUser, kPlugin);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Ppapi), PlayerInstalledPartner);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::ActiveX), PlayerInstalled);
  EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), PlayerNotInstalled);
  EXPECT_STREQ(PlayerKey(PlayerKind::Npapi), kPlugin);
}

TEST(InstalledPlayers, ScriptDebuggerNeedsANonZeroNumber) {
  struct Case {
    const char* what;
    std::optional<std::vector<uint8_t>> value;
    bool expected;
  };
  const Case cases[] = {
      {"missing", std::nullopt, false},
      {"0", std::vector<uint8_t>{0, 0, 0, 0}, false},
      {"1", std::vector<uint8_t>{1, 0, 0, 0}, true},
      {"0x01000000", std::vector<uint8_t>{0, 0, 0, 1}, true},
      {"QWORD 1 (does not fit)", std::vector<uint8_t>{1, 0, 0, 0, 0, 0, 0, 0}, false},
  };
  for (const Case& c : cases) {
    FakeSystem system;
    system.AddRegistryKey(kHklm32, kPepper);
    if (c.value) system.SetRegistryValue(kHklm32, kPepper, "isScriptDebugger", *c.value);
    EXPECT_EQ(IsScriptDebugger(system, PlayerKind::Ppapi), c.expected) << c.what;
    EXPECT_FALSE(IsScriptDebugger(system, PlayerKind::Npapi)) << c.what;
  }
}

TEST(InstalledPlayers, UninstallerPathIsAtMost260BytesAndNotEmpty) {
  const std::u16string longest(129, u'x');  // 258 bytes and the terminator: 260
  struct Case {
    const char* what;
    std::optional<std::vector<uint8_t>> value;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"missing", std::nullopt, std::nullopt},
      {"empty", Utf16Bytes(u""), std::nullopt},
      {"plain", Utf16Bytes(u"C:\\Windows\\SysWOW64\\Vantrel\\uninst.exe"),
       "C:\\Windows\\SysWOW64\\Vantrel\\uninst.exe"},
      {"non-ASCII", Utf16Bytes(u"C:\\Programme\\\u00dcbers\u00e9t\\\u6587.exe"),
       "C:\\Programme\\\xC3\x9C"
       "bers\xC3\xA9t\\\xE6\x96\x87.exe"},
      {"no terminator", Utf16Bytes(u"C:\\u.exe", false), "C:\\u.exe"},
      {"129 characters", Utf16Bytes(longest), std::string(129, 'x')},
      {"130 characters (262 bytes)", Utf16Bytes(longest + u"y"), std::nullopt},
      {"130 characters unterminated", Utf16Bytes(longest + u"y", false),
       std::string(129, 'x') + "y"},
  };
  for (const Case& c : cases) {
    FakeSystem system;
    system.AddRegistryKey(kHklm32, kPlugin);
    if (c.value) system.SetRegistryValue(kHklm32, kPlugin, "UninstallerPath", *c.value);
    EXPECT_EQ(ReadUninstallerPath(system, PlayerKind::Npapi), c.expected) << c.what;
    EXPECT_EQ(ReadUninstallerPath(system, PlayerKind::Ppapi), std::nullopt) << c.what;
  }
}

TEST(InstalledPlayers, VersionTextFitsIn260Characters) {
  struct Case {
    const char* what;
    std::optional<std::vector<uint8_t>> value;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"missing", std::nullopt, std::nullopt},
      {"usual", Utf16Bytes(u"32.0.0.465"), "32.0.0.465"},
      {"empty", Utf16Bytes(u""), ""},
      {"259 characters", Utf16Bytes(std::u16string(259, u'9')), std::string(259, '9')},
      {"260 characters", Utf16Bytes(std::u16string(260, u'9')), std::nullopt},
      {"lone surrogate", Utf16Bytes(u"1.\xD800"), "1.\xEF\xBF\xBD"},
  };
  for (const Case& c : cases) {
    FakeSystem system;
    system.AddRegistryKey(kHklm32, kActiveX);
    if (c.value) system.SetRegistryValue(kHklm32, kActiveX, "Version", *c.value);
    EXPECT_EQ(ReadPlayerVersion(system, PlayerKind::ActiveX), c.expected) << c.what;
  }
  FakeSystem system;
  EXPECT_EQ(ReadPlayerVersion(system, PlayerKind::ActiveX), std::nullopt);
}

TEST(InstalledPlayers, UpdatesPageWantsANonPartnerPlayerTheSystemDoesNotUpdate) {
  enum State { None, Installed, Partner };
  struct Case {
    bool windows8;
    State ppapi, npapi, activeX;
    bool expected;
  };
  const Case cases[] = {
      {true, None, None, None, false},          {false, None, None, None, false},
      {true, None, None, Installed, false},  // the system updates its own ActiveX player
      {false, None, None, Installed, true},     {true, Installed, None, None, true},
      {true, None, Installed, None, true},      {false, None, Installed, None, true},
      {true, Partner, Partner, Partner, false}, {false, Partner, Partner, Partner, false},
      {false, Partner, None, Installed, true},  {true, Partner, Installed, Partner, true},
      {true, Installed, Partner, None, true},
  };
  for (const Case& c : cases) {
    FakeSystem system;
    system.windows8OrLater = c.windows8;
    const std::pair<const char*, State> players[] = {
        {kPepper, c.ppapi}, {kPlugin, c.npapi}, {kActiveX, c.activeX}};
    for (const auto& [key, state] : players) {
      if (state == Installed) system.SetRegistryNumber(kHklm32, key, "isPartner", 0);
      if (state == Partner) system.SetRegistryNumber(kHklm32, key, "isPartner", 1);
    }
    EXPECT_EQ(WantsUpdatesPage(system), c.expected)
        << "windows8=" << c.windows8 << " ppapi=" << c.ppapi << " npapi=" << c.npapi
        << " activeX=" << c.activeX;
  }
}
