#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Why an entry set now would not be read back from the file as it was set.
enum class AdminEntryFault {
  kEmptyKey,
  kEmptyValue,
  kLineBreakOrNul,  // a CR or LF starts a new line; a NUL ends the text when it is written
  kEqualsInKey,     // a line is split at its first '='
  kTrimmedAtEnd,    // a blank, control or non-ASCII byte at either end is trimmed when read
};
// Nothing when key=value reads back as exactly this key and value.
std::optional<AdminEntryFault> FindEntryFault(std::string_view key, std::string_view value);

// The administrator's "tss.cfg": lines of key=value that can lock some of the player's choices.
class SMAdminConfig {
 public:
  enum Encoding : int { kUnreadable = -1, kPlain = 0, kUtf8WithMark = 1, kUtf16Ignored = 2 };

  explicit SMAdminConfig(std::string path);
  virtual ~SMAdminConfig() = default;

  // Reads the file again from scratch; true when it was parsed (plain or UTF-8 with mark).
  bool Load();
  // Parses file contents already in memory (what Load does after reading the file).
  bool LoadFromBytes(std::string_view bytes);

  std::optional<std::string> GetValue(std::string_view key) const;
  void SetValue(std::string_view key, std::string_view value);
  // Removes the key's entry, if there is one; the others keep their order.
  void RemoveValue(std::string_view key);
  // Every entry as "%s=%s\n" in list order; the caller opens and closes the stream.
  void Write(std::FILE* stream) const;
  // Rewrites the file at path() with Write: opened in text mode "w", so it is truncated, and no
  // folder is created. True when the file was opened, written and closed without an error.
  bool WriteToFile() const;

  int encoding() const { return encoding_; }
  const std::string& path() const { return path_; }
  const std::vector<std::pair<std::string, std::string>>& entries() const { return entries_; }

 private:
  void AddLine(std::string_view line);

  int encoding_ = kUnreadable;
  std::vector<std::pair<std::string, std::string>> entries_;
  std::string path_;
};
