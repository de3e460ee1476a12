#include "app/win32_sheet_frame.h"

#include "pages/advanced_page.h"
#include "pages/camera_mic_page.h"
#include "pages/playback_page.h"
#include "pages/storage_page.h"
#include "pages/updates_page.h"
#include "platform/win32/utf16.h"

namespace {

std::wstring Wide(const std::string& text) {
  return ToUtf16(text).value_or(L"");
}

std::unique_ptr<SettingsPage> MakePage(SMPageKind kind, const SMAppObjects& objects) {
  switch (kind) {
    case SMPageKind::kStorage:
      return std::make_unique<StoragePage>(objects);
    case SMPageKind::kCameraMic:
      return std::make_unique<CameraMicPage>(objects);
    case SMPageKind::kPlayback:
      return std::make_unique<PlaybackPage>(objects);
    case SMPageKind::kUpdates:
      return std::make_unique<UpdatesPage>(objects);
    case SMPageKind::kAdvanced:
      return std::make_unique<AdvancedPage>(objects);
  }
  return nullptr;
}

}  // namespace

Win32SheetFrame::~Win32SheetFrame() {
  DestroyPagesAndSheet();
}

void Win32SheetFrame::CreateSheet(const std::string& caption, bool rightToLeft) {
  sheet_ = std::make_unique<SettingsSheet>(Wide(caption), rightToLeft);
}

void Win32SheetFrame::CreatePage(SMPageKind kind, const SMAppObjects& objects, bool rightToLeft) {
  std::unique_ptr<SettingsPage>& page = pages_[static_cast<size_t>(kind)];
  page = MakePage(kind, objects);
  page->SetRightToLeft(rightToLeft);
}

void Win32SheetFrame::SetPageTitle(SMPageKind kind, const std::string& title) {
  pages_[static_cast<size_t>(kind)]->SetTitle(Wide(title));
}

bool Win32SheetFrame::AddPage(SMPageKind kind) {
  return sheet_->AddPage(*pages_[static_cast<size_t>(kind)]);
}

void Win32SheetFrame::SetStartPage(int index) {
  sheet_->SetActivePage(index);
}

void Win32SheetFrame::RunModal() {
  sheet_->RunModal(GetDesktopWindow());
}

void Win32SheetFrame::DestroyPagesAndSheet() {
  for (size_t index = pages_.size(); index-- > 0;) pages_[index].reset();
  sheet_.reset();
}
