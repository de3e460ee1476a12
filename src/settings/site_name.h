#pragma once

#include <string>

// True when a site name can be used as the name of one folder directly inside a base folder
// (the stored-data folder, the app-container folder, or, after "#", the settings folder) and
// names nothing else. Site names come from what the user typed or from a file, so a name that
// could climb out of the base folder, name the base folder or another site's folder (Windows
// drops trailing dots and blanks, reads ":" as a stream or drive, "~1" as a short name, "*" and
// "?" as wildcards in the shell), or a device is refused for every path built from it.
bool IsContainedName(const std::string& siteName);
