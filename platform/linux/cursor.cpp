// The pointer's position, asked of the X server. The protocol is spoken by hand: three messages
// over one descriptor under one deadline. An X library would read what it likes for as long as it
// likes, and would be code that the environment chooses. Each query has a connection of its own.
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>

#include "platform/linux/descriptor.h"
#include "platform/linux/x_conversation.h"
#include "platform/linux/x_display.h"
#include "platform/platform.h"

namespace platform {
namespace {

// A server on this machine answers within microseconds. One that hangs must not hold up requests.
constexpr std::chrono::milliseconds x_answer_timeout{250};

// Where no server listens, any user may, and would be sent this user's key.
bool is_trusted(int server) {
  ucred peer = {};
  socklen_t size = sizeof peer;
  return getsockopt(server, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         (peer.uid == 0 || peer.uid == geteuid());
}

descriptor connected_to(const x_address& address) {
  descriptor server(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  const auto* const place = reinterpret_cast<const sockaddr*>(&address.socket);
  if (connect(server.get(), place, address.size) != 0) server.close();
  return server;
}

}  // namespace

bool cursor_position(screen_point& point) {
  const auto display = named_display();
  if (!display) return false;
  const auto deadline = std::chrono::steady_clock::now() + x_answer_timeout;
  for (const x_address& address : addresses_of(*display)) {
    const descriptor server = connected_to(address);
    if (!server.valid() || !is_trusted(server.get())) continue;
    return ask_for_pointer(server.get(), display->screen, key_of(*display), deadline, point);
  }
  return false;
}

}  // namespace platform
