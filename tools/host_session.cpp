#include "tools/host_session.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "tools/printable.h"
#include "tools/request_cutter.h"
#include "transport/frame_format.h"

namespace {

using std::chrono::milliseconds;

// How long a host may leave a frame unread before it counts as stuck.
constexpr milliseconds write_timeout{10'000};

// How long a host that is never quiet can delay the next request.
constexpr milliseconds noise_timeout{10'000};

constexpr milliseconds exit_timeout{5'000};

// How long the output may stay open after the host has ended, if another process holds it.
constexpr milliseconds tail_timeout{1'000};

// How often the reader checks whether it is still wanted.
constexpr milliseconds read_step{50};

}  // namespace

host_session::host_session(std::unique_ptr<platform::child_process> host, transcript& shown,
                           milliseconds quiet_time, bool keep)
    : host_(std::move(host)),
      shown_(shown),
      quiet_time_(quiet_time),
      keep_(keep),
      splitter_(max_output_size),
      reader_([this] { read_output(); }) {}

host_session::~host_session() { stop_reader(); }

void host_session::send(const std::string& text, std::size_t envelope_size) {
  shown_.message(false, text);
  request_cutter cutter(text, 'r' + std::to_string(++sent_), envelope_size);
  std::string envelope;
  while (failure().empty() && cutter.next(envelope)) {
    shown_.frame(false, envelope);
    const std::string frame = make_frame(envelope);
    if (!host_->write(frame.data(), frame.size(), write_timeout)) {
      fail("the host takes no more input");
    }
    note_traffic();
  }
}

void host_session::wait_quiet() { wait_for(std::numeric_limits<std::size_t>::max()); }

void host_session::wait_for(std::size_t notifications) {
  checked_lock lock(mutex_);
  const auto give_up = clock::now() + quiet_time_ + noise_timeout;
  while (failure_.empty() && !output_ended_ && notifications_.size() < notifications) {
    const auto due = std::min(last_traffic_ + quiet_time_, give_up);
    if (clock::now() >= due) return;
    changed_.wait_until(lock.native(), due);
  }
}

std::optional<int> host_session::finish() {
  {
    const checked_lock lock(mutex_);
    input_closed_ = true;
  }
  host_->close_input();
  const std::optional<int> exit_value = host_->wait(exit_timeout);
  if (!exit_value.has_value()) {
    fail("the host doesn't end with its input; killed it");
    host_->kill();
  }
  {
    checked_lock lock(mutex_);
    changed_.wait_for(lock.native(), tail_timeout,
                      [this]() REQUIRES(mutex_) { return output_ended_; });
  }
  stop_reader();
  return exit_value;
}

std::vector<std::string> host_session::notifications() const {
  const checked_lock lock(mutex_);
  return notifications_;
}

std::string host_session::failure() const {
  const checked_lock lock(mutex_);
  return failure_;
}

void host_session::read_output() {
  char bytes[4096];
  for (;;) {
    const std::optional<std::size_t> count = host_->read(bytes, sizeof bytes, read_step);
    if (count == std::size_t{0}) return note_end_of_output();
    if (count.has_value()) take({bytes, *count});
    const checked_lock lock(mutex_);
    if (stop_) return;
  }
}

// After a failure the output is still read, so that the host doesn't block on it.
void host_session::take(std::string_view bytes) {
  note_traffic();
  if (!failure().empty()) return;
  splitter_.feed(bytes);
  std::string error;
  while (const std::optional<std::string> text = splitter_.next()) {
    if (!take_frame(*text, error)) return fail(error);
  }
  if (splitter_.out_of_step()) fail(splitter_.complaint());
}

bool host_session::take_frame(const std::string& text, std::string& error) {
  parsed_envelope e;
  bool in_order = parse_envelope(text, e, error);
  if (in_order && !e.from_host) {
    error = "an envelope without \"reply\"";
    in_order = false;
  }
  std::string joined;
  const auto result =
      in_order ? shown_.take(text, e, joiner_, joined, error) : join_result::refused;
  if (result == join_result::refused) error += ": " + printable_line(text);
  if (result == join_result::complete && keep_) keep(std::move(joined));
  return result != join_result::refused;
}

void host_session::keep(std::string notification) {
  const checked_lock lock(mutex_);
  notifications_.push_back(std::move(notification));
  changed_.notify_all();
}

void host_session::note_traffic() {
  const checked_lock lock(mutex_);
  last_traffic_ = clock::now();
}

void host_session::note_end_of_output() {
  std::string complaint = splitter_.complaint();
  if (complaint.empty() && joiner_.unfinished() != 0) complaint = "a notification is unfinished";
  const checked_lock lock(mutex_);
  if (failure_.empty() && !input_closed_)
    failure_ = "the host ended its output before its input ended";
  if (failure_.empty()) failure_ = complaint;
  output_ended_ = true;
  changed_.notify_all();
}

void host_session::fail(const std::string& what) {
  const checked_lock lock(mutex_);
  if (failure_.empty()) failure_ = what;
  changed_.notify_all();
}

void host_session::stop_reader() {
  {
    const checked_lock lock(mutex_);
    stop_ = true;
  }
  if (reader_.joinable()) reader_.join();
}
