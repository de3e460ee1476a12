#pragma once

#include <string>
#include <vector>

// Where a line of a caption may break. Latin, Cyrillic and the like break at spaces; Thai marks
// the places between its words with an invisible break (U+200B); Chinese and Japanese may break
// between any two of their letters, except before the marks that must not start a line (a
// comma, a full stop, a closing bracket, the long-vowel mark, a small kana) and after an opening
// bracket. The link markers <a> and </a> belong to the text beside them.
// A break a reader does not see: Thai writes a sentence without spaces, so its texts mark with
// this where a line may break.
inline constexpr wchar_t kInvisibleBreak = L'\u200B';

struct LineUnit {
  std::wstring gap;   // what stands before the unit when it does not start a line: " " or ""
  std::wstring text;  // never broken, unless it is wider than a whole line
  bool operator==(const LineUnit&) const = default;
};

std::vector<LineUnit> SplitAtBreaks(const std::wstring& line);
