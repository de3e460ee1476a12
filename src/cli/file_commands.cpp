// dump and encode: settings.sol streams to and from JSON, with no profile involved.
#include <cstdio>
#include <iostream>
#include <iterator>

#include "cli/commands.h"
#include "cli/json_codec.h"
#include "platform/file_io.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

int RunDump(CliContext& context, const std::string& file) {
  ClearSystemError();
  std::optional<std::string> bytes = ReadWholeFile(file);
  if (!bytes) return Fail(kExitFailed, FailureText("read", file, LastSystemError()));
  std::optional<DecodedSettings> settings = DecodeSettingsStream(*bytes);
  if (!settings) return Fail(kExitFailed, "not a readable settings file: " + file);
  if (context.options().json) {
    std::cout << DumpJson(SettingsToJson(*settings), 2) << '\n';
    return kExitOk;
  }
  std::cout << settings->objectName << '\n';
  for (const SettingValue& pair : settings->pairs) {
    std::cout << pair.name() << '\t' << TypeWord(pair) << '\t' << ValueText(pair) << '\n';
  }
  return kExitOk;
}

int RunEncode(CliContext&, const std::string& file) {
  std::string text;
  if (file.empty() || file == "-") {
    text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  } else {
    ClearSystemError();
    std::optional<std::string> bytes = ReadWholeFile(file);
    if (!bytes) return Fail(kExitFailed, FailureText("read", file, LastSystemError()));
    text = std::move(*bytes);
  }
  std::string error;
  std::optional<DecodedSettings> settings = SettingsFromJson(text, &error);
  if (!settings) return Fail(kExitFailed, error);
  std::string stream = EncodeSettingsStream(*settings);
#ifdef _WIN32
  _setmode(_fileno(stdout), _O_BINARY);
#endif
  if (std::fwrite(stream.data(), 1, stream.size(), stdout) != stream.size() ||
      std::fflush(stdout) != 0) {
    return Fail(kExitFailed, "cannot write the settings stream to standard output");
  }
  return kExitOk;
}
