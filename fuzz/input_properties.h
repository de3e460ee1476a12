#pragma once

#include <string>
#include <string_view>

// What must hold for any input of the administrator file reader and of the JSON that
// `vpsettings encode` reads. False, with the reason, when it does not.

// Every entry read is a trimmed, non-empty key without "=" and a trimmed, non-empty value, keys
// are unique, and writing the entries and reading them back gives the same entries (entries
// holding a zero byte excepted: the file is written as C strings).
bool AdminConfigReadBackHolds(std::string_view bytes, std::string* whyNot);

// JSON that is accepted converts to a settings stream, and the JSON written for what was read
// is accepted again and reads back the same.
bool SettingsJsonReadBackHolds(std::string_view text, std::string* whyNot);
