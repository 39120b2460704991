#include "bench/host_probe.h"

#include <cstdio>
#include <cstdlib>

#include "json/parser.h"
#include "platform/process_memory.h"
#include "transport/frame_format.h"

namespace {

constexpr std::chrono::seconds timeout{10};

[[noreturn]] void give_up(const std::string& what) {
  std::fprintf(stderr, "host_latency: %s\n", what.c_str());
  std::exit(1);
}

// The moments in the notification {"coffer-open-url":{"url":NOTIFIED,"uuid":POSTED}}.
moments read_moments(std::string message) {
  scoped_node_arena arena;
  const char* error_position = nullptr;
  const char* error_text = nullptr;
  const json_node* const root = json_parse(message.data(), error_position, error_text, arena);
  if (root == nullptr || root->first_child == nullptr) give_up("unexpected notification");
  const json_node* const url = root->first_child->first_child;
  if (url == nullptr || url->next_sibling == nullptr) give_up("unexpected notification");
  moments m;
  m.notified = nanoseconds(std::atoll(url->value.string));
  m.posted = nanoseconds(std::atoll(url->next_sibling->value.string));
  return m;
}

}  // namespace

nanoseconds now() { return std::chrono::steady_clock::now().time_since_epoch(); }

host_probe::host_probe(const std::string& path) : splitter_(max_output_size) {
  std::string error;
  host_ = platform::child_process::start(path, {}, error);
  if (host_ == nullptr) give_up("can't start '" + path + "': " + error);
}

void host_probe::send(const std::string& frame) {
  if (!host_->write(frame.data(), frame.size())) give_up("the host takes no more input");
}

moments host_probe::receive() {
  char bytes[4096];
  nanoseconds received{};
  for (;;) {
    while (const auto text = splitter_.next()) {
      parsed_envelope e;
      std::string message;
      std::string error;
      if (!parse_envelope(*text, e, error)) give_up(error);
      const join_result result = joiner_.add(e, message, error);
      if (result == join_result::refused) give_up(error);
      if (result != join_result::complete) continue;
      moments m = read_moments(message);
      m.received = received;
      return m;
    }
    const auto count = host_->read(bytes, sizeof bytes, timeout);
    if (!count || *count == 0) give_up("the host doesn't answer");
    if (received == nanoseconds{}) received = now();
    splitter_.feed({bytes, *count});
  }
}

std::size_t host_probe::resident_memory() const {
  return platform::resident_memory(host_->process_id());
}

void host_probe::finish() {
  host_->close_input();
  const auto exit_value = host_->wait(timeout);
  if (!exit_value || *exit_value != 0) give_up("the host didn't end well");
}
