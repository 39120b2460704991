#include "tools/tap/capture_maker.h"

#include <optional>
#include <utility>

#include "tools/message_text.h"
#include "transport/frame_format.h"

namespace {

// The limit that browsers set for a host; other hosts may send larger frames than ours.
constexpr std::size_t max_host_envelope = 1 << 20;

// Longer than the ids of any extension or host. Ids are kept while a message is unfinished.
constexpr std::size_t max_id = 1024;

// The frames of a message have few sizes. Further sizes are counted with the last one.
constexpr std::size_t max_runs = 64;

// Not the joiner's own message, which quotes the sender's text.
constexpr char refused[] = "a piece out of order, or too much that is unfinished";

void add_frame(std::vector<frame_run>& runs, std::uint64_t size) {
  if (runs.empty() || (runs.back().size != size && runs.size() < max_runs)) {
    runs.push_back({size, 0});
  }
  ++runs.back().count;
}

std::string line_of(const capture_item& item) { return capture_line(item) + '\n'; }

std::string unread_line(bool from_host, std::uint64_t bytes, const std::string& reason,
                        capture_time time) {
  capture_item item;
  item.kind = capture_kind::unread;
  item.time = capture_time_text(time);
  item.from_host = from_host;
  item.bytes = bytes;
  item.reason = reason;
  return line_of(item);
}

}  // namespace

capture_maker::capture_maker(bool with_values)
    : with_values_(with_values),
      from_browser_(frame_length_limit - 1),
      from_host_(max_host_envelope) {}

std::string capture_maker::take(bool from_host, std::string_view bytes, capture_time time) {
  direction& from = side(from_host);
  from.came += bytes.size();
  if (!from.loss.empty()) return {};
  from.splitter.feed(bytes);
  std::string lines;
  while (const std::optional<std::string> envelope = from.splitter.next()) {
    from.read += sizeof(frame_length) + envelope->size();
    lines += take_frame(from_host, *envelope, time);
  }
  return lines;
}

void capture_maker::lose(bool from_host, std::uint64_t bytes, const std::string& reason) {
  direction& from = side(from_host);
  from.came += bytes;
  if (from.loss.empty()) from.loss = reason;
}

std::string capture_maker::finish(capture_time time) {
  return leftovers(false, time) + leftovers(true, time);
}

// The direction of a frame is known here; its envelope may claim another one.
std::string capture_maker::take_frame(bool from_host, const std::string& envelope,
                                      capture_time time) {
  parsed_envelope e;
  std::string error, message;
  if (!parse_envelope(envelope, e, error)) {
    return unread_line(from_host, envelope.size(), error, time);
  }
  if (e.id.size() > max_id) return unread_line(from_host, envelope.size(), "a long id", time);
  e.from_host = from_host;
  const join_result result = joiner_.add(e, message, error);
  if (result == join_result::refused) return unread_line(from_host, envelope.size(), refused, time);
  auto& open = side(from_host).open;
  add_frame(open[e.id], envelope.size());
  if (result == join_result::stored) return {};
  return message_line(from_host, std::move(open.extract(e.id).mapped()), std::move(message), time);
}

std::string capture_maker::message_line(bool from_host, std::vector<frame_run> frames,
                                        std::string message, capture_time time) const {
  capture_item item;
  item.kind = capture_kind::message;
  item.time = capture_time_text(time);
  item.from_host = from_host;
  item.frames = std::move(frames);
  const std::size_t size = message.size();
  std::string error;
  auto text = message_text(std::move(message), {.hide_values = !with_values_}, error);
  if (!text.has_value()) return unread_line(from_host, size, error, time);
  item.message = std::move(*text);
  return line_of(item);
}

std::string capture_maker::leftovers(bool from_host, capture_time time) {
  const direction& from = side(from_host);
  std::string lines;
  if (from.came != from.read) {
    const std::string reason = from.loss.empty() ? from.splitter.complaint() : from.loss;
    lines += unread_line(from_host, from.came - from.read, reason, time);
  }
  for (const auto& [id, frames] : from.open) {
    std::uint64_t bytes = 0;
    for (const frame_run& run : frames) bytes += run.size * run.count;
    lines += unread_line(from_host, bytes, "a message that is unfinished", time);
  }
  return lines;
}
