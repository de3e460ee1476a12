#include "admincfg/admin_config.h"

#include <algorithm>

#include "platform/file_io.h"

namespace {

// The player trims every byte that is 32 or less as a signed char, so any byte of a
// non-ASCII UTF-8 sequence at either end goes too.
bool IsTrimmed(char c) {
  return static_cast<signed char>(c) <= 32;
}

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsTrimmed(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsTrimmed(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::optional<AdminEntryFault> FindEntryFault(std::string_view key, std::string_view value) {
  if (key.empty()) return AdminEntryFault::kEmptyKey;
  if (value.empty()) return AdminEntryFault::kEmptyValue;
  for (std::string_view text : {key, value}) {
    if (text.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos) {
      return AdminEntryFault::kLineBreakOrNul;
    }
  }
  if (key.find('=') != std::string_view::npos) return AdminEntryFault::kEqualsInKey;
  if (Trim(key) != key || Trim(value) != value) return AdminEntryFault::kTrimmedAtEnd;
  return std::nullopt;
}

SMAdminConfig::SMAdminConfig(std::string path) : path_(std::move(path)) {
  Load();
}

bool SMAdminConfig::Load() {
  entries_.clear();
  encoding_ = kUnreadable;
  if (path_.empty()) return false;
  std::optional<std::string> contents = ReadWholeFile(path_);
  if (!contents) return false;
  return LoadFromBytes(*contents);
}

bool SMAdminConfig::LoadFromBytes(std::string_view bytes) {
  entries_.clear();
  encoding_ = kUnreadable;
  if (bytes.size() < 4) return false;
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
    encoding_ = kUtf16Ignored;
    return false;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) {
    encoding_ = kUtf8WithMark;
    bytes.remove_prefix(3);
  } else {
    encoding_ = kPlain;
  }
  size_t lineStart = 0;
  size_t pos = 0;
  while (pos < bytes.size()) {
    char c = bytes[pos];
    if (c == '\n' || c == '\r') {
      AddLine(bytes.substr(lineStart, pos - lineStart));
      ++pos;
      // The player takes the character after a carriage return as the line feed of a CR LF
      // pair without looking at it, so a bare CR also swallows the next line's first byte.
      if (c == '\r' && pos < bytes.size()) ++pos;
      lineStart = pos;
    } else {
      ++pos;
    }
  }
  if (lineStart < bytes.size()) AddLine(bytes.substr(lineStart));
  return true;
}

void SMAdminConfig::AddLine(std::string_view line) {
  size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  std::string_view key = Trim(line.substr(0, equals));
  std::string_view value = Trim(line.substr(equals + 1));
  if (key.empty() || value.empty()) return;
  // A repeated key moves to the end with its newest value.
  std::erase_if(entries_, [&](const auto& entry) { return entry.first == key; });
  entries_.emplace_back(std::string(key), std::string(value));
}

std::optional<std::string> SMAdminConfig::GetValue(std::string_view key) const {
  for (const auto& [entryKey, entryValue] : entries_) {
    if (entryKey == key) return entryValue;
  }
  return std::nullopt;
}

void SMAdminConfig::SetValue(std::string_view key, std::string_view value) {
  for (auto& [entryKey, entryValue] : entries_) {
    if (entryKey == key) {
      entryValue = value;
      return;
    }
  }
  entries_.emplace_back(std::string(key), std::string(value));
}

void SMAdminConfig::RemoveValue(std::string_view key) {
  std::erase_if(entries_, [key](const auto& entry) { return entry.first == key; });
}

void SMAdminConfig::Write(std::FILE* stream) const {
  for (const auto& [key, value] : entries_) {
    std::fprintf(stream, "%s=%s\n", key.c_str(), value.c_str());
  }
}

bool SMAdminConfig::WriteToFile() const {
  if (path_.empty()) return false;
  std::FILE* file = OpenFileUtf8(path_, "w");
  if (file == nullptr) return false;
  std::fseek(file, 0, SEEK_SET);
  Write(file);
  bool failed = std::ferror(file) != 0;
  failed = std::fclose(file) != 0 || failed;
  return !failed;
}
