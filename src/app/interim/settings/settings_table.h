#pragma once
// Interim stand-in until the settings store lands; deleted then.
class SettingsTable {};
