#pragma once

#include <cwchar>
#include <string>

// What a link control shows of its caption: the text without its <a> and </a> markers and
// carriage returns. The layout measures this; the layout test checks the same.
inline std::wstring ShownText(std::wstring caption) {
  for (const wchar_t* mark : {L"<a>", L"</a>", L"\r"}) {
    for (size_t at = caption.find(mark); at != std::wstring::npos; at = caption.find(mark)) {
      caption.erase(at, std::wcslen(mark));
    }
  }
  return caption;
}
