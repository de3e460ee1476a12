#include "layout/line_breaks.h"

#include <cwchar>

namespace {

// Kana, ideographs and their punctuation and full-width forms: letters between which a line may
// break.
bool BreaksBetweenLetters(wchar_t letter) {
  return (letter >= 0x3000 && letter <= 0x30FF) || (letter >= 0x3400 && letter <= 0x4DBF) ||
         (letter >= 0x4E00 && letter <= 0x9FFF) || (letter >= 0xF900 && letter <= 0xFAFF) ||
         (letter >= 0xFF00 && letter <= 0xFF60);
}

bool MustNotStartLine(wchar_t letter) {
  return std::wcschr(
             L"、。，．・：；？！）」』】〕〉》｝ーぁぃぅぇぉっゃゅょァィゥェォッャュョ々)]},.:;!?"
             L"%",
             letter) != nullptr;
}

bool MustNotEndLine(wchar_t letter) {
  return std::wcschr(L"（「『【〔〈《｛([{", letter) != nullptr;
}

}  // namespace

std::vector<LineUnit> SplitAtBreaks(const std::wstring& line) {
  std::vector<LineUnit> units(1);
  wchar_t last = 0;  // the last letter shown, markers aside
  for (size_t at = 0; at < line.size(); ++at) {
    bool marker = false;
    for (const wchar_t* mark : {L"<a>", L"</a>"}) {
      const size_t length = std::wcslen(mark);
      if (!marker && line.compare(at, length, mark) == 0) {
        units.back().text += mark;
        at += length - 1;
        marker = true;
      }
    }
    if (marker) continue;
    const wchar_t letter = line[at];
    if (letter == L' ' || letter == kInvisibleBreak) {
      // Several spaces in a row stay together in the gap.
      if (!units.back().text.empty()) units.push_back(LineUnit{});
      units.back().gap += letter == L' ' ? L" " : L"";
      last = 0;
      continue;
    }
    const bool between = last != 0 && (BreaksBetweenLetters(last) || BreaksBetweenLetters(letter));
    if (between && !MustNotStartLine(letter) && !MustNotEndLine(last)) units.push_back(LineUnit{});
    units.back().text += letter;
    last = letter;
  }
  return units;
}
