#include "platform/linux/x_display.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/linux/descriptor.h"
#include "platform/linux/x_conversation.h"

namespace platform {
namespace {

// Far more than the keys of all of a user's displays.
constexpr std::size_t max_keys_size = std::size_t{64} * 1024;

// Whom an entry of the key file is for: this machine, or any.
constexpr std::uint16_t local_family = 256;
constexpr std::uint16_t wild_family = 0xFFFF;

bool is_digits(std::string_view text) {
  return !text.empty() && text.size() <= 5 &&
         text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string keys_path() {
  const char* const named = std::getenv("XAUTHORITY");
  if (named != nullptr) return named;
  const char* const home = std::getenv("HOME");
  return std::string(home != nullptr ? home : "") + "/.Xauthority";
}

// The start of the key file, if it is a regular file; any other kind could keep its reader waiting.
std::string read_keys() {
  const descriptor file(open(keys_path().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status = {};
  if (!file.valid() || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  std::string keys(max_keys_size, '\0');
  const ssize_t size = read(file.get(), keys.data(), keys.size());
  keys.resize(static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  return keys;
}

// Takes fields off a text; numbers have their high byte first. After a field that isn't whole
// everything is empty.
struct field_reader {
  std::string_view rest;

  std::uint16_t number() {
    if (rest.size() < 2) return rest = {}, std::uint16_t{0};
    const auto high = static_cast<unsigned char>(rest[0]),
               low = static_cast<unsigned char>(rest[1]);
    rest.remove_prefix(2);
    return static_cast<std::uint16_t>(high << 8 | low);
  }

  std::string_view text() {
    const std::size_t size = number();
    if (rest.size() < size) return rest = {};
    const std::string_view field = rest.substr(0, size);
    rest.remove_prefix(size);
    return field;
  }
};

std::string own_host_name() {
  char name[256] = {};
  gethostname(name, sizeof name - 1);
  return name;
}

}  // namespace

std::optional<x_display> named_display() {
  const char* const value = std::getenv("DISPLAY");
  const std::string_view name = value != nullptr ? value : "";
  const std::size_t colon = name.find(':');
  if (colon == name.npos) return std::nullopt;
  const std::string_view host = name.substr(0, colon);
  const std::string_view place = name.substr(colon + 1);
  const std::size_t point = std::min(place.find('.'), place.size());
  const std::string_view number = place.substr(0, point);
  const std::string_view screen = place.substr(std::min(point + 1, place.size()));
  const bool usable = (host.empty() || host == "unix") && is_digits(number);
  if (!usable || (!screen.empty() && !is_digits(screen))) return std::nullopt;
  return x_display{std::string(number), std::atoi(std::string(screen).c_str())};
}

std::vector<x_address> addresses_of(const x_display& display) {
  const std::string path = "/tmp/.X11-unix/X" + display.number;
  std::vector<x_address> found;
  for (const std::size_t shift : {std::size_t{1}, std::size_t{0}}) {
    x_address address = {};
    address.socket.sun_family = AF_UNIX;
    path.copy(address.socket.sun_path + shift, path.size());
    address.size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size());
    found.push_back(address);
  }
  return found;
}

std::string key_of(const x_display& display) {
  const std::string keys = read_keys();
  const std::string own_name = own_host_name();
  for (field_reader reader{keys}; !reader.rest.empty();) {
    const std::uint16_t family = reader.number();
    const std::string_view address = reader.text(), number = reader.text();
    const std::string_view kind = reader.text(), key = reader.text();
    const bool is_own = family == wild_family || (family == local_family && address == own_name);
    const bool fits = number.empty() || number == display.number;
    if (is_own && fits && kind == x_key_kind) return std::string(key);
  }
  return {};
}

}  // namespace platform
