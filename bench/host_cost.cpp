// Measures what whole hosts cost: processor time per message in each direction, time from start to
// end, and memory, next to programs that do the same work or none. Prints one line per result:
// WORK/SET, the median of the first program, ours, and the median of the ratios of all rounds.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "bench/workload.h"
#include "messages/library/byte_sink.h"
#include "messages/website.h"
#include "platform/child_process.h"
#include "platform/module_folder.h"
#include "platform/process_memory.h"

namespace {

using steady = std::chrono::steady_clock;
using process = platform::child_process;

constexpr std::chrono::seconds timeout{60};

// The work of one run, in bytes; so much that the host's start doesn't count.
constexpr std::size_t bytes_in_a_run = 24'000'000;

[[noreturn]] void give_up(const std::string& what) {
  std::fprintf(stderr, "host_cost: %s\n", what.c_str());
  std::exit(1);
}

std::unique_ptr<process> start(const std::string& program,
                               const std::vector<std::string>& arguments = {}) {
  std::string error;
  auto child = process::start(program, arguments, error);
  if (child == nullptr) give_up(error);
  return child;
}

std::string read_rest(process& child) {
  std::string output;
  char block[65536];
  for (;;) {
    const auto count = child.read(block, sizeof block, timeout);
    if (!count.has_value()) give_up("a host says nothing more, and doesn't end");
    if (*count == 0) return output;
    output.append(block, *count);
  }
}

double end_and_get_cpu_time(process& child) {
  if (child.wait(timeout) != 0) give_up("a host didn't end as it should");
  return static_cast<double>(child.cpu_time().count());
}

// Runs a program on a file, and returns the microseconds of processor time and the output. Not
// through a pipe: the faster host would sleep and wake more often, and pay for that too.
double cpu_time(const std::string& program, const std::vector<std::string>& arguments,
                const std::string& input_file, std::string& output) {
  std::vector<std::string> words = {"-c", R"(file=$1; shift; exec "$0" "$@" <"$file")", program,
                                    input_file};
  words.insert(words.end(), arguments.begin(), arguments.end());
  const auto child = start("/bin/sh", words);
  output = read_rest(*child);
  return end_and_get_cpu_time(*child);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

// Runs both in turn, so that whatever else the machine does hits both.
void compare(const std::string& name, int rounds, const std::function<double()>& first,
             const std::function<double()>& ours) {
  const auto count = static_cast<std::size_t>(rounds);
  std::vector<double> firsts(count), all_ours(count), ratios(count);
  for (std::size_t i = 0; i < count; ++i) {
    firsts[i] = first();
    all_ours[i] = ours();
    ratios[i] = all_ours[i] / firsts[i];
  }
  std::printf("%s,%.3f,%.3f,%.4f\n", name.c_str(), median(firsts), median(all_ours),
              median(ratios));
  std::fflush(stdout);
}

struct programs {
  std::string folder;  // of the host and the measuring agent
  std::string host;
  std::string bare;  // the host with the development agent
  std::string empty;
  std::string inbound;
  std::string outbound;

  void order(const std::string& payload, int count) const {
    std::ofstream(folder + "payload", std::ios::binary) << payload;
    std::ofstream(folder + "count") << count;
  }

  // Writes a file with this content and returns its path.
  std::string file_of(const std::string& input) const {
    std::ofstream(folder + "input", std::ios::binary) << input;
    return folder + "input";
  }
};

// Returns microseconds per message. Both hosts must have built the same number of bytes.
void compare_inbound(const programs& all, int inputs, int rounds) {
  all.order({}, 0);
  const std::vector<std::string> requests = make_requests(inputs);
  const std::string set = frames_of(requests);
  std::string input;
  double messages = 0;
  while (input.size() < bytes_in_a_run) {
    input += set;
    messages += static_cast<double>(requests.size());
  }
  const std::string file = all.file_of(input);
  std::string built_by_first, ignored, built_by_us;
  compare(
      "inbound/" + std::to_string(inputs) + " inputs", rounds,
      [&] { return cpu_time(all.inbound, {}, file, built_by_first) / messages; },
      [&] { return cpu_time(all.host, {}, file, ignored) / messages; });
  std::ifstream(all.folder + "built") >> built_by_us;
  if (built_by_first != built_by_us + '\n') {
    give_up("the hosts have built different messages: " + built_by_us + " bytes, not " +
            built_by_first);
  }
}

std::string payload_of(int inputs) {
  CfMsgWebsite website;
  website.sender = wide_string(u"tab-12");
  website.props.set(u"source", u"https://login.example.org/users/sign_in", true);
  website.props.set(u"title", u"Sign in \u2013 Stra\u00DFe", true);
  for (int i = 0; i < inputs; ++i) {
    propsW_t& input = website.inputs.emplace_back();
    for (const wide_char* const key : {u"name", u"value", u"type", u"id", u"context",
                                       u"form-context", u"cf-schema", u"cf-value"}) {
      input.set(key, u"street-address_12", true);
    }
    input.set(u"readonly", u"", true);
  }
  byte_sink sink;
  cfOStream stream = sink.stream();
  if (!website.write(stream)) give_up("can't make a payload");
  const byte_list bytes = sink.take();
  return {bytes.begin(), bytes.end()};
}

void compare_outbound(const programs& all, int inputs, int rounds) {
  const std::string payload = payload_of(inputs);
  const int count = static_cast<int>(bytes_in_a_run / 3 / payload.size()) + 1;
  all.order(payload, count);
  std::string first_said, we_said;
  const std::vector<std::string> arguments = {all.folder + "payload", std::to_string(count)};
  compare(
      "outbound/" + std::to_string(inputs) + " inputs", rounds,
      [&] { return cpu_time(all.outbound, arguments, "/dev/null", first_said) / count; },
      [&] { return cpu_time(all.host, {}, "/dev/null", we_said) / count; });
  all.order({}, 0);
  if (first_said.size() != we_said.size()) give_up("the hosts have said different things");
}

// Until the end of the output, which comes when the process is gone; in microseconds.
double lifetime(const std::string& program) {
  const auto begin = steady::now();
  const auto child = start(program);
  child->close_input();
  read_rest(*child);
  return std::chrono::duration<double, std::micro>(steady::now() - begin).count();
}

// Peak memory in kilobytes, of a host that is idle after a request.
double peak(const std::string& program) {
  const auto child = start(program);
  const std::string request = frames_of({make_requests(1).front()});
  child->write(request.data(), request.size(), timeout);
  // Nothing reports that a request has been handled; it takes a fraction of this.
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  return static_cast<double>(platform::peak_memory(child->process_id())) / 1024;
}

// The time that one host takes per byte at each message size, and that of many hosts at once. Gives
// up over growing costs only if `judge` says so: a single run on a busy machine proves nothing.
void show_growth(const programs& all, bool judge) {
  constexpr std::size_t together = 70;
  // Allows for noise, and for small messages costing more per byte, which hides growth.
  constexpr double allowed = 1.5;
  all.order({}, 0);
  double least = 1e9;
  for (const int inputs : {1, 40, 400, 4000}) {
    const std::string set = frames_of(make_requests(inputs));
    std::string input, ignored;
    while (input.size() < bytes_in_a_run) input += set;
    const std::string file = all.file_of(input);
    std::vector<double> costs(5);
    for (double& cost : costs) {
      cost = cpu_time(all.host, {}, file, ignored) * 1000 / static_cast<double>(input.size());
    }
    const double cost = median(costs);
    std::printf("growth/%d inputs,,%.3f,\n", inputs, cost);
    if (judge && cost > least * allowed) give_up("the cost per byte grows with the message");
    least = std::min(least, cost);
  }
  std::string input;
  const std::string set = frames_of(make_requests(40));
  while (input.size() < bytes_in_a_run / together * 4) input += set;
  std::vector<std::unique_ptr<process>> hosts;
  std::vector<std::thread> writers;
  writers.reserve(together);
  for (std::size_t i = 0; i < together; ++i) hosts.push_back(start(all.host));
  for (const auto& host : hosts) {
    writers.emplace_back([&input, &host] {
      host->write(input.data(), input.size(), timeout);
      host->close_input();
    });
  }
  double total = 0;
  for (std::size_t i = 0; i < together; ++i) {
    writers[i].join();
    read_rest(*hosts[i]);
    total += end_and_get_cpu_time(*hosts[i]);
  }
  const double cost = total * 1000 / static_cast<double>(input.size() * together);
  std::printf("growth/40 inputs in %zu hosts,,%.3f,\n", together, cost);
  if (judge && cost > least * allowed * 1.5) {
    give_up("the cost per byte grows with the number of hosts");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const bool quick = argc > 1 && std::string(argv[1]) == "--quick";
  const int rounds = quick ? 1 : 9;
  const std::string here = platform::module_folder();
  const programs all = {here + "bench/cost/", here + "bench/cost/cfhost", here + "cfhost",
                        here + "peer_empty",  here + "peer_inbound",      here + "peer_outbound"};
  for (const int inputs : {1, 40, 4000}) compare_inbound(all, inputs, rounds);
  for (const int inputs : {1, 40, 4000}) compare_outbound(all, inputs, rounds);
  compare(
      "start/to end", quick ? 5 : 301, [&] { return lifetime(all.empty); },
      [&] { return lifetime(all.bare); });
  compare(
      "memory/peak", 3, [&] { return peak(all.empty); }, [&] { return peak(all.bare); });
  show_growth(all, !quick);
}
