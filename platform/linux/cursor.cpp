// The pointer of the X server. The client library of the X protocol is opened when a position is
// first asked for: most starts never need it, and the host must also run where it isn't installed.
#include <dlfcn.h>
#include <poll.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <memory>

#include "platform/linux/x_display.h"
#include "platform/platform.h"

namespace platform {
namespace {

// What a setup's own length doesn't count.
constexpr std::size_t setup_header_size = 8;

struct free_memory {
  void operator()(void* memory) const { std::free(memory); }
};

struct xcb_library {
  void* module = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);

  template <class Function>
  Function* function(const char* name) const {
    return module ? reinterpret_cast<Function*>(dlsym(module, name)) : nullptr;
  }

  decltype(xcb_connect)* connect = function<decltype(xcb_connect)>("xcb_connect");
  decltype(xcb_disconnect)* disconnect = function<decltype(xcb_disconnect)>("xcb_disconnect");
  decltype(xcb_connection_has_error)* has_error =
      function<decltype(xcb_connection_has_error)>("xcb_connection_has_error");
  decltype(xcb_get_file_descriptor)* file_descriptor =
      function<decltype(xcb_get_file_descriptor)>("xcb_get_file_descriptor");
  decltype(xcb_get_setup)* setup = function<decltype(xcb_get_setup)>("xcb_get_setup");
  decltype(xcb_setup_roots_iterator)* roots =
      function<decltype(xcb_setup_roots_iterator)>("xcb_setup_roots_iterator");
  decltype(xcb_screen_next)* next_screen = function<decltype(xcb_screen_next)>("xcb_screen_next");
  decltype(xcb_query_pointer)* query_pointer =
      function<decltype(xcb_query_pointer)>("xcb_query_pointer");
  decltype(xcb_flush)* flush = function<decltype(xcb_flush)>("xcb_flush");
  decltype(xcb_poll_for_reply)* poll_for_reply =
      function<decltype(xcb_poll_for_reply)>("xcb_poll_for_reply");

  bool complete() const {
    return connect && disconnect && has_error && file_descriptor && setup && roots && next_screen &&
           query_pointer && flush && poll_for_reply;
  }
};

// A connection that outlives the single question. One that broke since the last question is
// replaced on the spot.
class pointer_source {
 public:
  bool ask(screen_point& point) {
    if (!xcb_.complete()) return false;
    const bool kept = connection_ != nullptr;
    return ask_once(point) || (kept && connection_ == nullptr && ask_once(point));
  }

 private:
  bool ask_once(screen_point& point) {
    if (!connected()) return false;
    const xcb_query_pointer_cookie_t question = xcb_.query_pointer(connection_, root_);
    xcb_.flush(connection_);
    void* answer = nullptr;
    if (!wait_for(question.sequence, answer)) {
      drop_connection();
      return false;
    }
    const std::unique_ptr<xcb_query_pointer_reply_t, free_memory> reply(
        static_cast<xcb_query_pointer_reply_t*>(answer));
    if (!reply) return false;
    point = {reply->root_x, reply->root_y};
    return true;
  }

  bool connected() {
    if (connection_ != nullptr) return true;
    // Connecting waits for the server without any limit.
    if (!x_server_answers()) return false;
    int screen = 0;
    connection_ = xcb_.connect(nullptr, &screen);
    if (xcb_.has_error(connection_)) {
      drop_connection();
      return false;
    }
    if (find_root(screen)) return true;
    drop_connection();
    return false;
  }

  // The library counts on lengths that the server gave; what they lead to must lie inside the
  // setup.
  bool find_root(int screen) {
    const xcb_setup_t* const setup = xcb_.setup(connection_);
    xcb_screen_iterator_t iterator = xcb_.roots(setup);
    for (; iterator.rem > 0 && lies_inside(*setup, iterator.data); xcb_.next_screen(&iterator)) {
      if (screen-- > 0) continue;
      root_ = iterator.data->root;
      return true;
    }
    return false;
  }

  static bool lies_inside(const xcb_setup_t& setup, const xcb_screen_t* screen) {
    const auto first = reinterpret_cast<std::uintptr_t>(&setup);
    const auto end = first + setup_header_size + std::size_t{4} * setup.length;
    const auto at = reinterpret_cast<std::uintptr_t>(screen);
    return at >= first && at <= end && end - at >= sizeof(xcb_screen_t);
  }

  bool wait_for(unsigned sequence, void*& answer) {
    const auto deadline = std::chrono::steady_clock::now() + x_answer_timeout;
    pollfd readable = {xcb_.file_descriptor(connection_), POLLIN, 0};
    while (std::chrono::steady_clock::now() < deadline) {
      xcb_generic_error_t* error = nullptr;
      if (xcb_.poll_for_reply(connection_, sequence, &answer, &error)) {
        std::free(error);
        return !xcb_.has_error(connection_);
      }
      if (poll(&readable, 1, static_cast<int>(x_answer_timeout.count())) <= 0) return false;
    }
    return false;
  }

  void drop_connection() {
    xcb_.disconnect(connection_);
    connection_ = nullptr;
  }

  xcb_library xcb_;
  xcb_connection_t* connection_ = nullptr;
  xcb_window_t root_ = 0;
};

}  // namespace

bool cursor_position(screen_point& point) {
  static pointer_source source;
  return source.ask(point);
}

}  // namespace platform
