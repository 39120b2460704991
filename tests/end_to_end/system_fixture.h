// What the tests need of the system beside child processes; one implementation for each.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/child_process.h"
#include "platform/debug_viewer.h"

// Makes cfsetup register hosts below `root`, where a system lets registrations lie in folders.
std::vector<std::string> registration_options(const std::filesystem::path& root);

// Replaces the host's configuration, which all hosts of a build share; so they do the channel on
// which their diagnostics come.
void write_configuration(const std::string& text);
std::unique_ptr<platform::debug_viewer> open_debug_channel();

// The number under which the diagnostics of a host show its main thread.
std::int32_t main_thread(const platform::child_process& host);

// Asks the process to end, as a browser may. False where systems have no such request.
bool ask_to_end(const platform::child_process& process);

// Whether nobody but the owner of a file may read or write it.
bool is_private(const std::filesystem::path& file);

// Lets no file grow that this process or one of its children writes, where that can be had.
struct no_room_in_files {
  no_room_in_files();
  ~no_room_in_files();
  bool possible = false;
};

// Whether a host may find no screen.
extern const bool screen_is_optional;

// Puts the pointer that hosts find without a screen of the test's at (0, 0). False if they find
// none.
bool rest_pointer();

// The screen of hosts, which lives as long as this where it is optional.
struct test_screen {
  // Where screens have names: at `where`, or at a free one.
  explicit test_screen(const std::string& where = {});
  ~test_screen();
  bool move_pointer(std::int16_t x, std::int16_t y);

  std::unique_ptr<platform::child_process> server;
  std::string name;
};
