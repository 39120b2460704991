// Soaks the real host: sends requests without end whose pages come back as notifications, to one
// host and then to many at a time. Checks every notification, and that no host grows.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "platform/child_process.h"
#include "platform/process_memory.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "tools/request_cutter.h"

namespace {

using steady = std::chrono::steady_clock;

constexpr std::chrono::seconds timeout{60};

// What a host may grow by once it has seen every size of page: pages of the allocator that happen
// to stay in use.
constexpr std::size_t allowed_growth = std::size_t{256} * 1024;

// Enough requests for a host to have seen them.
constexpr int warm_up = 2000;

[[noreturn]] void give_up(const std::string& what) {
  std::fprintf(stderr, "host_soak: %s\n", what.c_str());
  std::exit(1);
}

// Mostly small pages, now and then one of hundreds of inputs.
int inputs_of(int number) {
  if (number % 1000 == 999) return 400;
  if (number % 50 == 49) return 40;
  return number % 8;
}

std::string page(int number) {
  std::string text = R"({"method":"get-info-for-page","data":{"sender":"mirror","title":"page )" +
                     std::to_string(number) + R"(","inputs":[)";
  for (int i = inputs_of(number); i > 0; --i) {
    text += R"({"name":"field","value":"some \u00e4 value","id":"i)" + std::to_string(i) +
            (i > 1 ? "\"}," : "\"}");
  }
  return text + "]}}";
}

struct usage {
  std::size_t memory = 0;
  std::size_t files = 0;
  std::size_t threads = 0;
};

class soaked_host {
 public:
  explicit soaked_host(const std::string& path) : splitter_(max_output_size) {
    std::string error;
    host_ = platform::child_process::start(path, {}, error);
    if (host_ == nullptr) give_up("can't start '" + path + "': " + error);
    (void)next_message();  // the agent's report of the start
  }

  // The whole page has been sent when this returns, so the host never waits for its input and its
  // reader at the same time.
  void send(int number) {
    request_cutter cutter(page(number), std::to_string(number), max_request_envelope);
    std::string frames;
    for (std::string envelope; cutter.next(envelope);) frames += make_frame(envelope);
    if (!host_->write(frames.data(), frames.size(), timeout)) give_up("a host takes no more input");
  }

  // Receives the notification for the page `number`.
  void receive(int number) {
    const std::string message = next_message();
    std::size_t inputs = 0;
    for (std::size_t at = 0; (at = message.find(R"({"name":"field")", at)) != message.npos; ++at) {
      ++inputs;
    }
    const std::string title = R"("title":"page )" + std::to_string(number) + '"';
    if (!message.starts_with(R"({"coffer_info_update":{"sender":"mirror",)") ||
        message.find(title) == message.npos ||
        inputs != static_cast<std::size_t>(inputs_of(number))) {
      give_up("not the notification of page " + std::to_string(number) + ": " +
              message.substr(0, 500));
    }
  }

  usage used() const {
    const std::int64_t id = host_->process_id();
    return {platform::resident_memory(id), platform::open_files(id), platform::running_threads(id)};
  }

  void finish() {
    host_->close_input();
    if (host_->wait(timeout) != 0) give_up("a host didn't end well");
  }

 private:
  // The joiner refuses pieces that are out of order.
  std::string next_message() {
    char bytes[65536];
    for (;;) {
      while (const auto text = splitter_.next()) {
        parsed_envelope e;
        std::string message, error;
        if (!parse_envelope(*text, e, error)) give_up(error);
        const join_result result = joiner_.add(e, message, error);
        if (result == join_result::refused) give_up(error);
        if (result == join_result::complete) return message;
      }
      const auto count = host_->read(bytes, sizeof bytes, timeout);
      if (!count || *count == 0) give_up("a host doesn't answer " + splitter_.complaint());
      splitter_.feed({bytes, *count});
    }
  }

  std::unique_ptr<platform::child_process> host_;
  frame_splitter splitter_;
  message_joiner joiner_;
};

void check(const usage& before, const usage& after) {
  if (after.memory > before.memory + allowed_growth) {
    give_up("a host has grown from " + std::to_string(before.memory / 1024) + " to " +
            std::to_string(after.memory / 1024) + " KiB");
  }
  if (after.files != before.files) give_up("a host has lost track of open files");
  if (after.threads != before.threads) give_up("a host has lost track of threads");
}

void print(int requests, const usage& u, steady::time_point start) {
  const std::chrono::duration<double> seconds = steady::now() - start;
  std::printf("%9d requests  %7.1f s  %6zu KiB  %2zu files  %2zu threads\n", requests,
              seconds.count(), u.memory / 1024, u.files, u.threads);
  std::fflush(stdout);
}

void soak_one(const std::string& path, int requests) {
  const auto start = steady::now();
  soaked_host host(path);
  usage warm;
  for (int i = 0; i < requests; ++i) {
    host.send(i);
    host.receive(i);
    if (i + 1 == warm_up) print(warm_up, warm = host.used(), start);
    if ((i + 1) % std::max(requests / 10, 1) == 0) print(i + 1, host.used(), start);
  }
  check(warm, host.used());
  host.finish();
}

void soak_many(const std::string& path, int count, int seconds) {
  const auto start = steady::now();
  std::vector<std::unique_ptr<soaked_host>> hosts;
  hosts.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) hosts.push_back(std::make_unique<soaked_host>(path));
  std::vector<usage> warm(hosts.size());
  int number = 0;
  for (; number < warm_up || steady::now() - start < std::chrono::seconds(seconds); ++number) {
    for (const auto& host : hosts) host->send(number);
    for (const auto& host : hosts) host->receive(number);
    if (number + 1 != warm_up) continue;
    for (std::size_t i = 0; i < hosts.size(); ++i) warm[i] = hosts[i]->used();
  }
  usage largest;
  for (std::size_t i = 0; i < hosts.size(); ++i) {
    const usage now = hosts[i]->used();
    check(warm[i], now);
    if (now.memory > largest.memory) largest = now;
  }
  print(number * count, largest, start);
  for (const auto& host : hosts) host->finish();
}

}  // namespace

int main(int count, char** arguments) {
  const std::vector<std::string> words(arguments + 1, arguments + count);
  if (words.size() != 4) {
    std::puts(
        "Usage: host_soak HOST REQUESTS HOSTS SECONDS\n\n"
        "Sends so many requests to the host at the path HOST, which must have the measuring agent\n"
        "beside it, then keeps so many hosts busy for so long. See scripts/soak.");
    return words == std::vector<std::string>{"--help"} ? 0 : 2;
  }
  const int requests = std::atoi(words[1].c_str());
  const int hosts = std::atoi(words[2].c_str());
  if (requests < warm_up || hosts < 1) give_up("needs 2000 requests and one host at least");
  std::printf("one host:\n");
  soak_one(words[0], requests);
  std::printf("%d hosts, the largest of them:\n", hosts);
  soak_many(words[0], hosts, std::atoi(words[3].c_str()));
  std::puts("no host grew, each notification was whole and in order");
}
