#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/linux/debug_address.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/x_display.h"
#include "tests/end_to_end/system_fixture.h"

namespace fs = std::filesystem;

std::vector<std::string> registration_options(const fs::path& root) {
  return {"--root", root.string()};
}

void write_configuration(const std::string& text) {
  const fs::path folder = fs::path(CFHOST_SYSCONFDIR) / "Orvanta";
  fs::create_directories(folder);
  std::ofstream(folder / "coffer.ini") << text;
}

std::unique_ptr<platform::debug_viewer> open_debug_channel() {
  const fs::path folder = platform::debug_folder(platform::debug_address());
  fs::create_directories(folder);
  fs::permissions(folder, fs::perms::owner_all);
  std::string error;
  auto channel = platform::debug_viewer::open(error);
  if (channel == nullptr) throw std::runtime_error(error);
  return channel;
}

std::int32_t main_thread(const platform::child_process& host) {
  return static_cast<std::int32_t>(host.process_id());
}

bool ask_to_end(const platform::child_process& process) {
  return kill(static_cast<pid_t>(process.process_id()), SIGTERM) == 0;
}

bool is_private(const fs::path& file) {
  return fs::status(file).permissions() == (fs::perms::owner_read | fs::perms::owner_write);
}

no_room_in_files::no_room_in_files() {
#if defined(__SANITIZE_THREAD__)
  // The sanitizer's runtime writes to a file of its own before a program starts.
  possible = false;
#else
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit nothing = {0, RLIM_INFINITY};
  possible = setrlimit(RLIMIT_FSIZE, &nothing) == 0;
#endif
}

no_room_in_files::~no_room_in_files() {
  const rlimit everything = {RLIM_INFINITY, RLIM_INFINITY};
  setrlimit(RLIMIT_FSIZE, &everything);
}

const bool screen_is_optional = true;

bool rest_pointer() { return false; }

test_screen::test_screen(const std::string& where) {
  std::vector<std::string> arguments = {"-noreset", "-displayfd", "1"};
  if (!where.empty()) arguments.push_back(where);
  std::string error, number;
  server = platform::child_process::start("/usr/bin/Xvfb", arguments, error);
  if (server == nullptr) throw std::runtime_error(error);
  // The server writes its number and a line break once it is ready.
  for (char c = 0; server->read(&c, 1, std::chrono::seconds(20)) == 1u && c != '\n';) number += c;
  name = number.empty() ? "" : ':' + number;
  setenv("DISPLAY", name.c_str(), 1);
}

test_screen::~test_screen() = default;

// By hand, since the library for it doesn't exist on every architecture. The server first describes
// itself and its root window; the answer to a question after the move shows that the move was made.
bool test_screen::move_pointer(std::int16_t x, std::int16_t y) {
  const platform::x_address address = platform::addresses_of({name.substr(1)}).front();
  const platform::descriptor screen(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  std::vector<std::uint16_t> words;
  const auto say = [&] { return write(screen.get(), words.data(), words.size() * 2) > 0; };
  const auto hear = [&](std::size_t count) {
    words.resize(count);
    return recv(screen.get(), words.data(), count * 2, MSG_WAITALL) > 0;
  };
  words = {'l', 11, 0, 0, 0, 0};
  if (connect(screen.get(), reinterpret_cast<const sockaddr*>(&address.socket), address.size) != 0)
    return false;
  if (!say() || !hear(4) || !hear(words[3] * std::size_t{2})) return false;
  const std::size_t root = 16 + (words[8] + 3u) / 4 * 2 + 4 * (words[10] >> 8u);
  words = {41, 6, 0, 0, words[root], words[root + 1], 0, 0, 0, 0};
  words.insert(words.end(), {static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(y), 43, 1});
  return say() && hear(16) && (words[0] & 0xFF) == 1;
}
