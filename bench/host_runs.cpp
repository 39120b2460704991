#include "bench/host_runs.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>

#include "platform/child_process.h"
#include "platform/process_memory.h"

namespace {

using steady = std::chrono::steady_clock;
using process = platform::child_process;

constexpr std::chrono::seconds timeout{60};

// What all rounds of one candidate may take, beyond the three that a median needs.
constexpr std::chrono::seconds most_time{5};

std::unique_ptr<process> start(const std::string& program,
                               const std::vector<std::string>& arguments) {
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

double end_and_get_cpu_time(const measured_host& host, process& child) {
  if (child.wait(timeout) != 0) give_up(host.name + " didn't end as it should");
  return static_cast<double>(child.cpu_time().count());
}

// So often that it fits the time, by how long the first run has taken.
std::size_t fitting_rounds(std::size_t rounds, steady::duration first) {
  const auto fitting = static_cast<std::size_t>(most_time / std::max(first, steady::duration(1)));
  return std::min(rounds, std::max<std::size_t>(fitting, 3));
}

}  // namespace

void give_up(const std::string& what) {
  std::fprintf(stderr, "host_cost: %s\n", what.c_str());
  std::exit(1);
}

double cpu_time(const measured_host& host, const std::vector<std::string>& more,
                const std::string& input_file, std::string& output) {
  std::vector<std::string> words = {"-c", R"(file=$1; shift; exec "$0" "$@" <"$file")",
                                    host.program, input_file};
  words.insert(words.end(), host.arguments.begin(), host.arguments.end());
  words.insert(words.end(), more.begin(), more.end());
  const auto child = start("/bin/sh", words);
  output = read_rest(*child);
  return end_and_get_cpu_time(host, *child);
}

double cpu_time_together(const measured_host& host, std::size_t count, const std::string& input) {
  std::vector<std::unique_ptr<process>> children(count);
  std::vector<std::thread> writers;
  writers.reserve(count);
  for (auto& child : children) child = start(host.program, host.arguments);
  for (const auto& child : children) {
    writers.emplace_back([&input, &child] {
      child->write(input.data(), input.size(), timeout);
      child->close_input();
    });
  }
  double total = 0;
  for (std::size_t i = 0; i < count; ++i) {
    writers[i].join();
    read_rest(*children[i]);
    total += end_and_get_cpu_time(host, *children[i]);
  }
  return total;
}

double lifetime(const measured_host& host) {
  const auto begin = steady::now();
  const auto child = start(host.program, host.arguments);
  child->close_input();
  read_rest(*child);
  return std::chrono::duration<double, std::micro>(steady::now() - begin).count();
}

double peak(const measured_host& host, const std::string& input) {
  const auto child = start(host.program, host.arguments);
  child->write(input.data(), input.size(), timeout);
  // Nothing reports that the input has been handled; even an interpreter takes a fraction of this.
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  return static_cast<double>(platform::peak_memory(child->process_id())) / 1024;
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void compare(const std::string& name, std::size_t rounds,
             const std::vector<candidate>& candidates) {
  std::vector<std::vector<double>> values(candidates.size()), ratios(candidates.size());
  std::vector<std::size_t> own_rounds(candidates.size(), rounds);
  for (std::size_t round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < candidates.size(); ++i) {
      if (round >= own_rounds[i]) continue;
      const auto begin = steady::now();
      values[i].push_back(candidates[i].run());
      if (round == 0) own_rounds[i] = fitting_rounds(rounds, steady::now() - begin);
      if (round < values[0].size()) ratios[i].push_back(values[i][round] / values[0][round]);
    }
  }
  for (std::size_t i = 0; i < candidates.size(); ++i) {
    std::printf("%s,%s,%.3f,%.4f\n", name.c_str(), candidates[i].name.c_str(), median(values[i]),
                median(ratios[i]));
  }
  std::fflush(stdout);
}
