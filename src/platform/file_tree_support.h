#pragma once

// Pieces shared by the Windows and POSIX file-tree operations, so that both give the same
// results for the same trees.

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// File times in 100-nanosecond units since 1601-01-01 (UTC), the unit of the age window.
inline constexpr uint64_t kFileTimeUnitsPerSecond = 10'000'000;

// "Now" for RemoveTreeByAge. Tests fix it so that a file can be exactly at an edge of the window.
uint64_t FileTreeNow();
void SetFileTreeNowForTesting(std::optional<uint64_t> fixedNow);

// A file is removed only when its age lies strictly inside the window. The arithmetic is
// unsigned 64-bit throughout, as the player's: a file from the future has a huge age.
inline bool IsInsideAgeWindow(uint64_t now, uint64_t lastWrite, uint64_t minAgeSeconds,
                              uint64_t maxAgeSeconds) {
  uint64_t age = now - lastWrite;
  return age > minAgeSeconds * kFileTimeUnitsPerSecond &&
         age < maxAgeSeconds * kFileTimeUnitsPerSecond;
}

// A name made only of ASCII digits (the empty name too) sorts after every other name, by value.
inline bool IsNumericEntryName(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Compares two numeric names by their decimal values, however long they are.
inline int CompareDecimalValues(const std::string& a, const std::string& b) {
  size_t aStart = std::min(a.find_first_not_of('0'), a.size());
  size_t bStart = std::min(b.find_first_not_of('0'), b.size());
  size_t aDigits = a.size() - aStart;
  size_t bDigits = b.size() - bStart;
  if (aDigits != bDigits) return aDigits < bDigits ? -1 : 1;
  return a.compare(aStart, aDigits, b, bStart, bDigits);
}

// The order of ListEntries: non-numeric names first, byte by byte; then numeric names by value.
inline bool EntryNameLess(const std::string& a, const std::string& b) {
  bool aNumeric = IsNumericEntryName(a);
  bool bNumeric = IsNumericEntryName(b);
  if (aNumeric != bNumeric) return bNumeric;
  if (!aNumeric) return a < b;  // std::string compares bytes as unsigned, as strcmp does
  return CompareDecimalValues(a, b) < 0;
}

inline void SortEntryNames(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end(), EntryNameLess);
}
