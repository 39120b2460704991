// Measures the real host: how soon a request reaches the agent, how soon a notification is out, how
// long a start takes, and what resources the process uses.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bench/host_probe.h"
#include "tools/request_cutter.h"

namespace {

constexpr int starts = 51;
constexpr int timed_requests = 2001;
constexpr int memory_requests = 100'000;

constexpr char page[] =
    R"({"method":"get-info-for-page","data":{"sender":"tab-12","source":"https://example.org/login",)"
    R"("title":"Sign in","inputs":[{"name":"email","value":"","type":"text","id":"e1"}]}})";

std::string page_frame() {
  std::string envelope;
  request_cutter cutter(page, "bench", max_request_envelope);
  (void)cutter.next(envelope);
  return make_frame(envelope);
}

// Prints the median and the 99th percentile, in microseconds.
void print_times(const char* what, std::vector<nanoseconds> times) {
  std::sort(times.begin(), times.end());
  const auto at = [&times](std::size_t percent) {
    return static_cast<double>(times[(times.size() - 1) * percent / 100].count()) / 1000;
  };
  std::printf("%-34s %10.1f us %10.1f us\n", what, at(50), at(99));
}

void measure_start(const std::string& path) {
  std::vector<nanoseconds> ready;
  std::vector<nanoseconds> whole;
  for (int i = 0; i < starts; ++i) {
    const nanoseconds begin = now();
    host_probe host(path);
    ready.push_back(host.receive().received - begin);
    host.finish();
    whole.push_back(now() - begin);
  }
  print_times("start to first notification", ready);
  print_times("start to end", whole);
}

void measure_requests(host_probe& host, const std::string& frame) {
  std::vector<nanoseconds> to_agent;
  std::vector<nanoseconds> to_extension;
  for (int i = 0; i < timed_requests; ++i) {
    const nanoseconds begin = now();
    host.send(frame);
    const moments m = host.receive();
    to_agent.push_back(m.posted - begin);
    to_extension.push_back(m.received - m.notified);
  }
  print_times("frame sent to message posted", to_agent);
  print_times("notify to first frame received", to_extension);
}

void measure_memory(host_probe& host, const std::string& frame) {
  const auto print = [&host](int requests) {
    std::printf("resident after %7d requests    %10zu KiB\n", requests,
                host.resident_memory() / 1024);
  };
  print(timed_requests);
  for (int i = 0; i < memory_requests; ++i) {
    host.send(frame);
    (void)host.receive();
  }
  print(timed_requests + memory_requests);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2 || std::strcmp(arguments[1], "--help") == 0) {
    std::puts(
        "Usage: host_latency HOST\n\n"
        "Measures the host at the path HOST, which must have the measuring agent beside it: the\n"
        "build puts both into its folder bin/bench.");
    return count == 2 ? 0 : 2;
  }
  std::printf("%-34s %13s %13s\n", "", "median", "99 %");
  measure_start(arguments[1]);
  const std::string frame = page_frame();
  host_probe host(arguments[1]);
  (void)host.receive();
  measure_requests(host, frame);
  measure_memory(host, frame);
  host.finish();
}
