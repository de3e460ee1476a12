#include "app/radio_group.h"

namespace {

template <typename Visit>
void ForEachRadio(HWND first, Visit visit) {
  int number = 0;
  for (HWND control = first; control != nullptr; control = GetWindow(control, GW_HWNDNEXT)) {
    if (control != first && (GetWindowLongW(control, GWL_STYLE) & WS_GROUP) != 0) break;
    if ((SendMessageW(control, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON) == 0) continue;
    visit(control, number++);
  }
}

}  // namespace

int ReadRadioGroup(HWND dialog, int firstId) {
  int index = -1;
  ForEachRadio(GetDlgItem(dialog, firstId), [&](HWND radio, int number) {
    if (SendMessageW(radio, BM_GETCHECK, 0, 0) != 0) index = number;
  });
  return index;
}

void WriteRadioGroup(HWND dialog, int firstId, int index) {
  ForEachRadio(GetDlgItem(dialog, firstId), [&](HWND radio, int number) {
    SendMessageW(radio, BM_SETCHECK, number == index ? BST_CHECKED : BST_UNCHECKED, 0);
  });
}
