#include "tools/tap/recorder.h"

#include <cctype>
#include <chrono>
#include <cstdio>
#include <utility>

#include "platform/files.h"
#include "platform/raw_streams.h"

namespace {

// As much as a capture holds by default. A disk that falls further behind won't catch up.
constexpr std::size_t queue_capacity = std::size_t{64} * 1024 * 1024;

// Reserved for the last line.
constexpr std::size_t end_reserve = 1024;

// A browser kills a host that is still there two seconds after its input has ended, and the host
// itself may take one of them.
constexpr std::chrono::milliseconds finish_timeout{900};

// The most recordings that may begin in the same microsecond.
constexpr int most_names = 100;

// A file name that every system accepts.
std::string name_of(const std::string& time, int attempt) {
  std::string name = "capture-";
  for (const char c : time) {
    if (std::isdigit(static_cast<unsigned char>(c)) != 0) name += c;
    if (c == 'T' || c == '.') name += '-';
  }
  if (attempt > 1) name += '-' + std::to_string(attempt);
  return name + ".jsonl";
}

std::string time_now() { return capture_time_text(std::chrono::system_clock::now()); }

}  // namespace

recorder::recorder(std::string folder, capture_item start, std::size_t limit)
    : folder_(std::move(folder)),
      start_(std::move(start)),
      limit_(limit),
      queue_(queue_capacity),
      maker_(start_.with_values),
      thread_([this] { run(); }) {}

recorder::~recorder() {
  queue_.close();
  thread_.join();
}

void recorder::finish(std::optional<int> exit_value) {
  checked_lock lock(mutex_);
  exit_value_ = exit_value;
  queue_.close();
  changed_.wait_for(lock.native(), finish_timeout, [this]() REQUIRES(mutex_) { return ended_; });
}

void recorder::run() {
  platform::give_way();
  if (open()) write(capture_line(start_) + '\n');
  traffic_chunk chunk;
  while (queue_.get(chunk)) record(chunk);
  write_end();
  const checked_lock lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

// Here and not at the start, since even creating a file may take time.
bool recorder::open() {
  std::string error;
  bool exists = true;
  for (int attempt = 1; exists && attempt <= most_names; ++attempt) {
    const std::string path = platform::path_below(folder_, name_of(start_.time, attempt));
    file_ = platform::private_file::create(path, exists, error);
  }
  if (file_ == nullptr) stop(error);
  return file_ != nullptr;
}

void recorder::record(const traffic_chunk& chunk) {
  if (!stopped_.empty()) return;
  if (chunk.lost) {
    maker_.lose(chunk.from_host, chunk.size, "the traffic was faster than the record of it");
  } else {
    write(maker_.take(chunk.from_host, chunk.bytes, chunk.time));
  }
}

// Writes whole lines, as long as there is room for them.
void recorder::write(std::string_view lines) {
  if (!stopped_.empty()) return;
  const std::size_t room = limit_ - end_reserve - written_;
  std::string_view fitting = lines;
  if (lines.size() > room) fitting = lines.substr(0, lines.substr(0, room).rfind('\n') + 1);
  std::string error;
  if (!file_->append(fitting, error)) {
    file_.reset();
    return stop(error);
  }
  written_ += fitting.size();
  if (fitting.size() < lines.size()) stop("the capture has reached its limit");
}

void recorder::write_end() {
  write(maker_.finish(std::chrono::system_clock::now()));
  if (file_ == nullptr) return;
  capture_item end;
  end.kind = capture_kind::end;
  end.time = time_now();
  end.reason = stopped_;
  {
    const checked_lock lock(mutex_);
    end.exit_value = exit_value_;
  }
  std::string ignored;
  (void)file_->append(capture_line(end) + '\n', ignored);
}

void recorder::stop(const std::string& reason) {
  stopped_ = reason;
  queue_.refuse();
  std::fprintf(stderr, "cftap: nothing more is recorded: %s\n", reason.c_str());
}
