#include "app/app_startup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/test_profile.h"

namespace {

using ::testing::ElementsAre;

const char* PageName(SMPageKind kind) {
  static const char* const kNames[] = {"Storage", "CameraMic", "Playback", "Updates", "Advanced"};
  return kNames[static_cast<int>(kind)];
}

// Records what the entry asks of the sheet, and when, in one log shared with the objects. The
// same request for several pages in a row is one entry: "add Storage, CameraMic".
class RecordingFrame : public SMSheetFrame {
 public:
  explicit RecordingFrame(std::vector<std::string>& log) : log_(log) {}
  void CreateSheet(const std::string& caption, bool) override {
    log_.push_back("sheet " + caption);
  }
  void CreatePage(SMPageKind kind, const SMAppObjects&, bool) override {
    Note("page", PageName(kind));
  }
  void SetPageTitle(SMPageKind kind, const std::string& title) override {
    Note("title", PageName(kind) + ("=" + title));
  }
  bool AddPage(SMPageKind kind) override {
    Note("add", PageName(kind));
    return true;
  }
  void SetStartPage(int index) override { log_.push_back("start " + std::to_string(index)); }
  void RunModal() override { log_.push_back("run"); }
  void DestroyPagesAndSheet() override { log_.push_back("destroy pages and sheet"); }

 private:
  void Note(const std::string& request, const std::string& page) {
    if (!log_.empty() && log_.back().starts_with(request + " "))
      log_.back() += ", " + page;
    else
      log_.push_back(request + " " + page);
  }
  std::vector<std::string>& log_;
};

// One of the objects the entry creates, noting its start and its end in the shared log.
template <typename Base>
class Logged : public Base {
 public:
  template <typename... Arguments>
  Logged(std::vector<std::string>& log, const char* name, Arguments&&... arguments)
      : Base(std::forward<Arguments>(arguments)...), log_(log), name_(name) {
    log_.push_back(name_);
  }
  ~Logged() override { log_.push_back(std::string("~") + name_); }

 private:
  std::vector<std::string>& log_;
  const char* name_;
};

class LoggingFactory : public SMAppFactory {
 public:
  explicit LoggingFactory(std::vector<std::string>& log) : log_(log) {}
  std::unique_ptr<SMPlatformServices> CreatePlatform(SMSystem& system) override {
    return std::make_unique<Logged<NativePlatform>>(log_, "platform", system);
  }
  std::unique_ptr<SMSettingsManager> CreateSettings(SMPlatformServices& platform) override {
    if (settingsFail) return nullptr;
    return std::make_unique<Logged<SMSettingsManager>>(log_, "settings", platform);
  }
  std::unique_ptr<SMStringTable> CreateStringTable(SMSystem& system) override {
    return std::make_unique<Logged<SMUserLanguageStringTable>>(log_, "strings", system);
  }
  std::unique_ptr<SMAdminConfig> CreateAdminConfig(const std::string& path) override {
    adminConfigPath = path;
    return std::make_unique<Logged<SMAdminConfig>>(log_, "adminconfig", path);
  }

  bool settingsFail = false;
  std::string adminConfigPath;

 private:
  std::vector<std::string>& log_;
};

class AppStartupTest : public ::testing::Test {
 protected:
  int Run() { return RunSettingsApplication(profile.system, factory, frame); }

  TestProfile profile;
  std::vector<std::string> log;
  LoggingFactory factory{log};
  RecordingFrame frame{log};
};

TEST(StartPageIndexTest, KeywordsSelectFixedIndicesFirstMatchWinning) {
  struct Case {
    const char* commandLine;
    bool updatesWanted = true;
    int index;
  };
  const Case cases[] = {
      {.commandLine = "app.exe", .index = -1},
      {.commandLine = "app.exe startupdialog=storage", .index = 0},
      {.commandLine = "app.exe startupdialog=cammic", .updatesWanted = false, .index = 1},
      // With the Updates page the fixed indices cross: "advanced" opens Updates and back.
      {.commandLine = "app.exe startupdialog=advanced", .index = 3},
      {.commandLine = "app.exe startupdialog=updates", .index = 4},
      {.commandLine = "app.exe startupdialog=advanced", .updatesWanted = false, .index = 3},
      {.commandLine = "app.exe startupdialog=updates", .updatesWanted = false, .index = -1},
      {.commandLine = "app.exe startupdialog=cammic startupdialog=storage", .index = 0},
      {.commandLine = "app.exe StartupDialog=storage", .index = -1},
      {.commandLine = "app.exe startupdialog=advancedx", .index = 3},
      // The program path is part of the command line too.
      {.commandLine = "C:\\startupdialog=playback\\app.exe", .index = 2},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(StartPageIndex(test.commandLine, test.updatesWanted), test.index)
        << test.commandLine << " updates=" << test.updatesWanted;
  }
}

TEST_F(AppStartupTest, BuildsRunsAndTearsDownInOrderWithTheUpdatesPage) {
  profile.system.AddPlayer(PlayerKind::Npapi);
  profile.system.commandLine = "VantrelPlayerApp.exe startupdialog=advanced";

  EXPECT_EQ(Run(), 0);

  EXPECT_NE(factory.adminConfigPath.find("tss.cfg"), std::string::npos);
  EXPECT_THAT(
      log,
      ElementsAre("platform", "settings", "strings", "adminconfig",
                  "sheet Vantrel Player Settings Manager",
                  "page Storage, CameraMic, Playback, Updates, Advanced",
                  "title Storage=Storage, CameraMic=Camera and Mic, Playback=Playback, "
                  "Updates=Updates, Advanced=Advanced",
                  "add Storage, CameraMic, Playback, Updates, Advanced", "start 3", "run",
                  "~strings", "~adminconfig", "~settings", "~platform", "destroy pages and sheet"));
}

TEST_F(AppStartupTest, MissingSettingsManagerShowsNothingAndReleasesTheRest) {
  factory.settingsFail = true;
  EXPECT_EQ(Run(), 0);
  EXPECT_THAT(log, ElementsAre("platform", "strings", "adminconfig", "~strings", "~adminconfig",
                               "~platform"));
}

}  // namespace
