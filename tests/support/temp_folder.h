#pragma once

#include <filesystem>
#include <map>
#include <string>

// A fresh folder under the system's temporary folder, deleted with everything in it at the end.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // The folder, or a path below it, as UTF-8 text with the platform's separators.
  std::string Utf8(const std::filesystem::path& relative) const;

 private:
  std::filesystem::path path_;
};

std::string PathToUtf8(const std::filesystem::path& path);
std::filesystem::path PathFromUtf8(const std::string& utf8);

// Writes bytes to a file, creating its folders.
void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes);
// The bytes of a file; empty when it cannot be read.
std::string ReadFileBytes(const std::filesystem::path& path);
// Every entry below a folder, links not followed: each file with its bytes, folders and links
// marked as such; keyed by the path relative to the folder.
std::map<std::string, std::string> FolderSnapshot(const std::filesystem::path& folder);
