// The entry of VantrelPlayerApp.exe: one property sheet, no other window and no other loop.
// clang-format off
#include <windows.h>
#include <commctrl.h>
// clang-format on

#include "app/app_startup.h"
#include "app/win32_sheet_frame.h"
#include "platform/win32/win32_platform.h"
#include "platform/win32/win32_system.h"

namespace {

class Win32AppFactory : public SMAppFactory {
 public:
  std::unique_ptr<SMPlatformServices> CreatePlatform(SMSystem& system) override {
    return std::make_unique<Win32PlatformServices>(system);
  }
};

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  // Wine registers every class whatever is asked; Windows registers only these.
  INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LINK_CLASS | ICC_LISTVIEW_CLASSES |
                                                   ICC_TAB_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&classes);
  Win32System system;
  Win32AppFactory factory;
  Win32SheetFrame frame;
  return RunSettingsApplication(system, factory, frame);
}
