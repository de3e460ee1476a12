#include "app/page_text.h"

bool WrapLink(std::optional<std::wstring>& text) {
  if (!text) return false;
  text = L"<a>" + *text + L"</a>";
  return true;
}

bool AppendParagraph(std::optional<std::wstring>& text, const std::optional<std::wstring>& more) {
  if (!more) return false;
  text = text.value_or(L"") + L"\n\n" + *more;
  return true;
}

uint32_t ConfirmBoxFlags(bool rightToLeft) {
  return rightToLeft ? kConfirmBoxRightToLeftFlags : kConfirmBoxFlags;
}
