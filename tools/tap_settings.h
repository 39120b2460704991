// The settings of cftap, in a file beside it. Browsers start a host with arguments of their own and
// no others, so the settings can't be arguments. A script in between would need a shell on one
// system and an interpreter with its own rules on the other, and browsers decide which environment
// variables they pass on. So each recording has a folder with a copy of cftap, this file, and the
// captures: a program can find its own folder on every system, whoever starts it.
#pragma once

#include <cstddef>
#include <string>

inline constexpr char tap_settings_name[] = "cftap.json";

constexpr std::size_t default_capture_mib = 64;
constexpr std::size_t max_capture_mib = 4096;

struct tap_settings {
  std::string host;                             // empty: the one installed with cftap
  bool with_values = false;                     // keep values of inputs and settings too
  std::size_t limit_mib = default_capture_mib;  // of one capture
};

// Reads the file in `folder`. False, with the reason in `error`, if it is missing or faulty.
bool read_tap_settings(const std::string& folder, tap_settings& settings, std::string& error);

// The file's content.
std::string tap_settings_text(const tap_settings& settings);

// If `program` is the cftap of a recording, the host that it starts; otherwise `program`.
std::string recorded_host(const std::string& program);
