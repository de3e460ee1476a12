#include "platform/installed_players.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/fake_system.h"

namespace {

const char* const kPepper = "SOFTWARE\\Tessaline\\VantrelPlayerPepper";
const char* const kPlugin = "SOFTWARE\\Tessaline\\VantrelPlayerPlugin";
const char* const kActiveX = "SOFTWARE\\Tessaline\\VantrelPlayerActiveX";

using Bytes = std::optional<std::vector<uint8_t>>;  // nullopt: no value

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

// A system where only the NPAPI player is installed, with the given value (if any).
FakeSystem WithPluginValue(const char* name, const Bytes& value) {
  FakeSystem system;
  system.AddRegistryKey(kHklm32, kPlugin);
  if (value) system.SetRegistryValue(kHklm32, kPlugin, name, *value);
  return system;
}

}  // namespace

TEST(InstalledPlayers, ProbeReadsIsPartnerAsAFourByteNumber) {
  struct Case {
    const char* what;
    bool keyExists;
    Bytes isPartner;
    PlayerProbe expected;
  };
  const Case cases[] = {
      {"no key", false, std::nullopt, PlayerNotInstalled},
      {"key without isPartner", true, std::nullopt, PlayerInstalled},
      {"DWORD 1", true, std::vector<uint8_t>{1, 0, 0, 0}, PlayerInstalledPartner},
      {"DWORD 0x101", true, std::vector<uint8_t>{1, 1, 0, 0}, PlayerInstalled},
      {"QWORD 1 (too long)", true, std::vector<uint8_t>{1, 0, 0, 0, 0, 0, 0, 0}, PlayerInstalled},
  };
  for (const Case& c : cases) {
    FakeSystem system = c.keyExists ? WithPluginValue("isPartner", c.isPartner) : FakeSystem();
    EXPECT_EQ(ProbePlayerKey(system, PlayerKind::Npapi), c.expected) << c.what;
  }
}

// Any non-zero number, not only the 1 a partner build needs.
TEST(InstalledPlayers, ScriptDebuggerNeedsANonZeroNumber) {
  FakeSystem system = WithPluginValue("isScriptDebugger", std::vector<uint8_t>{0, 0, 0, 1});
  EXPECT_TRUE(IsScriptDebugger(system, PlayerKind::Npapi));
}

// The uninstaller path is read into 260 bytes and may not be empty; the version into 520.
TEST(InstalledPlayers, RegistryTextsFitTheirBuffers) {
  const std::u16string longest(129, u'x');  // 258 bytes and the terminator: 260
  struct Case {
    const char* what;
    const char* name;
    Bytes value;
    std::optional<std::string> expected;
  };
  const Case cases[] = {
      {"missing path", "UninstallerPath", std::nullopt, std::nullopt},
      {"empty path", "UninstallerPath", Utf16Bytes(u""), std::nullopt},
      {"129 characters", "UninstallerPath", Utf16Bytes(longest), std::string(129, 'x')},
      {"130 characters (262 bytes)", "UninstallerPath", Utf16Bytes(longest + u"y"), std::nullopt},
      {"130 characters unterminated", "UninstallerPath", Utf16Bytes(longest + u"y", false),
       std::string(129, 'x') + "y"},
      {"empty version", "Version", Utf16Bytes(u""), ""},
      {"259 characters", "Version", Utf16Bytes(std::u16string(259, u'9')), std::string(259, '9')},
      {"260 characters", "Version", Utf16Bytes(std::u16string(260, u'9')), std::nullopt},
      {"lone surrogate", "Version", Utf16Bytes(u"1.\xD800"), "1.\xEF\xBF\xBD"},
  };
  for (const Case& c : cases) {
    FakeSystem system = WithPluginValue(c.name, c.value);
    const bool path = std::string(c.name) == "UninstallerPath";
    EXPECT_EQ(path ? ReadUninstallerPath(system, PlayerKind::Npapi)
                   : ReadPlayerVersion(system, PlayerKind::Npapi),
              c.expected)
        << c.what;
  }
}

TEST(InstalledPlayers, UpdatesPageWantsANonPartnerPlayerTheSystemDoesNotUpdate) {
  enum State { None, Installed, Partner };
  struct Case {
    bool windows8;
    State ppapi, npapi, activeX;
    bool wanted;
  };
  // From Windows 8 the system updates its own ActiveX player.
  const Case cases[] = {
      {.windows8 = false, .ppapi = None, .npapi = None, .activeX = None, .wanted = false},
      {.windows8 = true, .ppapi = None, .npapi = None, .activeX = Installed, .wanted = false},
      {.windows8 = false, .ppapi = Partner, .npapi = None, .activeX = Installed, .wanted = true},
      {.windows8 = true, .ppapi = Installed, .npapi = Partner, .activeX = None, .wanted = true},
      {.windows8 = true, .ppapi = Partner, .npapi = Installed, .activeX = Partner, .wanted = true},
      {.windows8 = false, .ppapi = Partner, .npapi = Partner, .activeX = Partner, .wanted = false},
  };
  for (const Case& c : cases) {
    FakeSystem system;
    system.windows8OrLater = c.windows8;
    const std::pair<const char*, State> players[] = {
        {kPepper, c.ppapi}, {kPlugin, c.npapi}, {kActiveX, c.activeX}};
    for (const auto& [key, state] : players) {
      if (state != None) system.SetRegistryNumber(kHklm32, key, "isPartner", state == Partner);
    }
    EXPECT_EQ(WantsUpdatesPage(system), c.wanted) << "row " << &c - cases;
  }
}
