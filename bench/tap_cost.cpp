// Measures what cftap costs between browser and host: how long the same requests and their
// notifications take with and without it, and how long a single request takes. Prints the medians
// in milliseconds, and the median of the ratios of all rounds.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/child_process.h"
#include "platform/module_folder.h"
#include "tools/request_cutter.h"
#include "tools/tap_settings.h"

namespace {

namespace fs = std::filesystem;
using steady = std::chrono::steady_clock;

constexpr std::chrono::seconds timeout{60};
constexpr std::size_t bytes_in_a_run = 8'000'000;
constexpr int single_requests = 500;

[[noreturn]] void give_up(const std::string& what) {
  std::fprintf(stderr, "tap_cost: %s\n", what.c_str());
  std::exit(1);
}

// The measuring agent sends such a page back.
std::string frames_of_page(int inputs) {
  std::string text = R"({"method":"get-info-for-page","data":{"sender":"mirror","inputs":[)";
  for (int i = 0; i < inputs; ++i) {
    text += R"({"name":"field","value":"some value","type":"text","id":"street-address_12"},)";
  }
  text.back() = ']';
  request_cutter cutter(text + "}}", "bench", max_request_envelope);
  std::string frames;
  for (std::string envelope; cutter.next(envelope);) frames += make_frame(envelope);
  return frames;
}

double milliseconds_since(steady::time_point begin) {
  return std::chrono::duration<double, std::milli>(steady::now() - begin).count();
}

std::unique_ptr<platform::child_process> start(const std::string& program) {
  std::string error;
  auto host = platform::child_process::start(program, {}, error);
  if (host == nullptr) give_up(error);
  return host;
}

std::size_t read_some(platform::child_process& host) {
  static char block[65536];
  const auto count = host.read(block, sizeof block, timeout);
  if (!count.has_value()) give_up("a host says nothing more, and doesn't end");
  return *count;
}

// As fast as the host takes them, until the last of its notifications has been read. Nobody waits
// for what the tap still has to record then.
double flood(const std::string& program, const std::string& input) {
  const auto begin = steady::now();
  const auto host = start(program);
  std::thread writer([&] {
    if (!host->write(input.data(), input.size(), timeout)) give_up("a host takes no more input");
    host->close_input();
  });
  while (read_some(*host) != 0) {
  }
  const double time = milliseconds_since(begin);
  writer.join();
  if (host->wait(timeout) != 0) give_up("a host didn't end well");
  return time;
}

// One after the other: the time of one, until its answer begins.
double turnaround(const std::string& program, const std::string& request) {
  const auto host = start(program);
  (void)read_some(*host);
  const auto begin = steady::now();
  for (int i = 0; i < single_requests; ++i) {
    if (!host->write(request.data(), request.size(), timeout)) give_up("a host is gone");
    (void)read_some(*host);
  }
  return milliseconds_since(begin) / single_requests;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Runs both in turn, so that whatever else the machine does hits both.
void compare(const std::string& name, int rounds, const std::function<double()>& alone,
             const std::function<double()>& recorded) {
  std::vector<double> first, second, ratios;
  for (int i = 0; i < rounds; ++i) {
    first.push_back(alone());
    second.push_back(recorded());
    ratios.push_back(second.back() / first.back());
  }
  std::printf("%-24s %10.3f %10.3f %8.3f\n", name.c_str(), median(first), median(second),
              median(ratios));
  std::fflush(stdout);
}

std::string put_recorder(const std::string& here, const std::string& host) {
  const fs::path folder = here + "bench/tap";
  fs::remove_all(folder);
  fs::create_directories(folder);
  fs::copy_file(here + "cftap", folder / "cftap");
  tap_settings settings;
  settings.host = host;
  std::ofstream(folder / tap_settings_name) << tap_settings_text(settings);
  return (folder / "cftap").string();
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 && std::string(argv[1]) == "--quick" ? 1 : 15;
  const std::string here = platform::module_folder();
  const std::string host = here + "bench/cfhost";
  const std::string tap = put_recorder(here, host);
  std::printf("%-24s %10s %10s %8s\n", "", "alone", "recorded", "ratio");
  for (const int inputs : {1, 40, 400}) {
    const std::string page = frames_of_page(inputs);
    std::string input;
    while (input.size() < bytes_in_a_run) input += page;
    compare(
        "flood, " + std::to_string(inputs) + " inputs", rounds, [&] { return flood(host, input); },
        [&] { return flood(tap, input); });
  }
  const std::string page = frames_of_page(1);
  compare(
      "turnaround, 1 input", rounds, [&] { return turnaround(host, page); },
      [&] { return turnaround(tap, page); });
}
