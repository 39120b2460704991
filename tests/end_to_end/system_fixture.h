// What the tests need from the system besides child processes; each system has one implementation.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/child_process.h"
#include "platform/debug_viewer.h"

// Makes cfsetup register hosts below `root`, on systems where registrations may lie in folders.
std::vector<std::string> registration_options(const std::filesystem::path& root);

// Replaces the host's configuration. All hosts of a build share it, as they share the channel of
// their diagnostics.
void write_configuration(const std::string& text);
std::unique_ptr<platform::debug_viewer> open_debug_channel();

// The number that the host's diagnostics show for its main thread.
std::int32_t main_thread(const platform::child_process& host);

// Asks the process to end, as a browser may do. False on systems without such a request.
bool ask_to_end(const platform::child_process& process);

// Whether only the owner of a file may read or write it.
bool is_private(const std::filesystem::path& file);

// While it exists, no file that this process or its children write can grow, on systems that allow
// that.
struct no_room_in_files {
  no_room_in_files();
  ~no_room_in_files();
  bool possible = false;
};

// Whether a host may find no screen.
extern const bool screen_is_optional;

// Moves the pointer that hosts find without a screen of the test's own to (0, 0). False if they
// find none.
bool rest_pointer();

// The screen for hosts; on systems where a screen is optional it lasts as long as this object.
struct test_screen {
  // Where screens have names: named `where`, or the first free one.
  explicit test_screen(const std::string& where = {});
  ~test_screen();
  bool move_pointer(std::int16_t x, std::int16_t y);

  std::unique_ptr<platform::child_process> server;
  std::string name;
};
