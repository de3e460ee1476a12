#include "support/temp_folder.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>

#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

std::string PathToUtf8(const fs::path& path) {
  std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

fs::path PathFromUtf8(const std::string& utf8) {
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

// The process id keeps two test programs running at once out of each other's folders.
TempFolder::TempFolder() {
#ifdef _WIN32
  const int process = _getpid();
#else
  const int process = getpid();
#endif
  static std::atomic<unsigned> counter{0};
  auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
  path_ = fs::temp_directory_path() / ("vp-test-" + std::to_string(process) + "-" +
                                       std::to_string(stamp) + "-" + std::to_string(counter++));
  fs::create_directories(path_);
}

TempFolder::~TempFolder() {
  std::error_code error;
  fs::remove_all(path_, error);
}

std::string TempFolder::Utf8(const fs::path& relative) const {
  return PathToUtf8((path_ / relative).make_preferred());
}

void WriteFileBytes(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string ReadFileBytes(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
}

std::map<std::string, std::string> FolderSnapshot(const fs::path& folder) {
  std::map<std::string, std::string> entries;
  std::error_code error;
  for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end;
       it.increment(error)) {
    std::string& entry = entries[PathToUtf8(fs::relative(it->path(), folder))];
    entry = it->is_symlink()     ? "<link>"
            : it->is_directory() ? "<folder>"
                                 : ReadFileBytes(it->path());
  }
  return entries;
}
