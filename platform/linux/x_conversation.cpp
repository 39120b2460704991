#include "platform/linux/x_conversation.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>

namespace platform {
namespace {

using clock = std::chrono::steady_clock;

// Sizes and places in the protocol, in bytes.
constexpr std::size_t reply_size = 32;
constexpr std::size_t setup_head_size = 8;
constexpr std::size_t setup_fixed_size = 32;
constexpr std::size_t format_size = 8;
constexpr std::size_t screen_fixed_size = 40;
constexpr std::size_t depth_head_size = 8;
constexpr std::size_t visual_size = 24;

constexpr char success = 1;
constexpr char reply = 1;
constexpr char error = 0;
constexpr char long_event = 35;  // the one kind that may be longer than a reply

// Bytes addressed by position. Past the end everything reads as 0.
struct packet {
  std::string bytes;

  template <class Number>
  Number at(std::size_t place) const {
    Number number = 0;
    if (place <= bytes.size() && bytes.size() - place >= sizeof number) {
      std::memcpy(&number, bytes.data() + place, sizeof number);
    }
    return number;
  }
};

std::size_t padded(std::size_t size) { return (size + 3) / 4 * 4; }

template <class Number>
void put(std::string& text, Number number) {
  text.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void put_padded(std::string& text, std::string_view field) {
  text.append(field).append(padded(field.size()) - field.size(), '\0');
}

// One deadline covers everything that is sent and received.
class x_stream {
 public:
  x_stream(int server, clock::time_point deadline) : server_(server), deadline_(deadline) {}

  bool say(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = send(server_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count < 0 && !may_go_on(POLLOUT)) return false;
      bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return true;
  }

  bool hear(packet& into, std::size_t size) {
    // A server that never stops talking must not keep anybody waiting.
    if (clock::now() >= deadline_) return false;
    into.bytes.resize(size);
    for (std::size_t got = 0; got < size;) {
      const ssize_t count = recv(server_, into.bytes.data() + got, size - got, 0);
      if (count == 0 || (count < 0 && !may_go_on(POLLIN))) return false;
      got += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return true;
  }

 private:
  // After a failed transfer: waits until it can be tried again. False if it can't be.
  bool may_go_on(short event) const {
    if (errno != EAGAIN && errno != EINTR) return false;
    pollfd wanted = {server_, event, 0};
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - clock::now());
    const int ready = left.count() > 0 ? poll(&wanted, 1, static_cast<int>(left.count())) : 0;
    return ready > 0 || (ready < 0 && errno == EINTR);
  }

  int server_;
  clock::time_point deadline_;
};

// Low byte first, protocol 11.0.
std::string greeting(std::string_view key) {
  const std::string_view kind = key.empty() ? std::string_view() : x_key_kind;
  std::string text("l\0\v\0\0\0", 6);
  put(text, static_cast<std::uint16_t>(kind.size()));
  put(text, static_cast<std::uint16_t>(key.size()));
  put(text, std::uint16_t{0});
  put_padded(text, kind);
  put_padded(text, key);
  return text;
}

// Where the next screen begins: after this one's depths, each with its visuals.
std::size_t end_of_screen(const packet& setup, std::size_t place) {
  int depths = setup.at<std::uint8_t>(place + 39);
  for (place += screen_fixed_size; depths > 0; --depths) {
    place += depth_head_size + visual_size * setup.at<std::uint16_t>(place + 2);
  }
  return place;
}

// The root window of a screen; 0 where there is none.
std::uint32_t root_of(const packet& setup, int screen) {
  if (screen >= setup.at<std::uint8_t>(20)) return 0;
  std::size_t place = setup_fixed_size + padded(setup.at<std::uint16_t>(16)) +
                      format_size * setup.at<std::uint8_t>(21);
  for (; screen > 0; --screen) place = end_of_screen(setup, place);
  return setup.at<std::uint32_t>(place);
}

// The setup's length has two bytes and counts words, which bounds it.
std::uint32_t hear_root(x_stream& stream, int screen) {
  packet head, setup;
  if (!stream.hear(head, setup_head_size) || head.bytes[0] != success) return 0;
  if (!stream.hear(setup, std::size_t{4} * head.at<std::uint16_t>(6))) return 0;
  return root_of(setup, screen);
}

std::string pointer_question(std::uint32_t root) {
  std::string text("\x26\0\2\0", 4);
  put(text, root);
  return text;
}

// Events that nobody asked for may come first.
bool hear_pointer(x_stream& stream, screen_point& point) {
  packet heard;
  do {
    if (!stream.hear(heard, reply_size)) return false;
  } while (heard.bytes[0] != reply && heard.bytes[0] != error && heard.bytes[0] != long_event);
  if (heard.bytes[0] != reply) return false;
  point = {heard.at<std::int16_t>(16), heard.at<std::int16_t>(18)};
  return true;
}

}  // namespace

bool ask_for_pointer(int server, int screen, std::string_view key, clock::time_point deadline,
                     screen_point& point) {
  x_stream stream(server, deadline);
  if (!stream.say(greeting(key))) return false;
  const std::uint32_t root = hear_root(stream, screen);
  return root != 0 && stream.say(pointer_question(root)) && hear_pointer(stream, point);
}

}  // namespace platform
