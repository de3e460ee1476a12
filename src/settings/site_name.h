#pragma once

#include <string>

// Two different questions about a site name, answered by the rules of Windows folder names.

// True when "#" + siteName is one valid folder name that names only this site's settings folder.
// The '#' keeps device names ("con.example.com") ordinary, so such sites are read, written and
// kept like any other. A name has no settings folder of its own when it holds a separator, a
// control character or one of :*?"<>|, ends in a dot or blank (Windows drops those and would
// open another site's folder), or holds '~' and a digit (a short name of another folder). For
// such a name nothing is read, every write fails, and its file counts as absent.
bool HasOwnSettingsFolder(const std::string& siteName);

// True when a deletion may touch the folder named siteName itself inside a stored-data folder.
// Deletion goes through the shell, which expands "*" and "?", and that folder has no '#' in
// front, so a name that could name the base folder, climb out of it, open a device, alias
// another folder through its short name or name the app-container folder is never deleted.
bool MayDeleteSiteFolder(const std::string& siteName);
