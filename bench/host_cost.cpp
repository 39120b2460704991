// Measures what whole hosts cost: processor time per message in each direction, time from start to
// end, and memory, next to programs that do the same work or none. Prints one line per result, as
// `compare` does; the growth of our own costs with the size of messages has no ratio.
//
//   host_cost [--quick] [--host NAME PROGRAM [ARGUMENT...]]...
//
// Each --host is one more for messages that come in. With --dump FILE it has to write what it
// builds into that file, unless it builds nothing.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/host_runs.h"
#include "bench/workload.h"
#include "messages/library/byte_sink.h"
#include "messages/website.h"
#include "platform/module_folder.h"

namespace {

// The work of one run, in bytes; so much that the host's start doesn't count.
constexpr std::size_t bytes_in_a_run = 24'000'000;

struct programs {
  std::string folder;  // of the host and the measuring agent
  measured_host host;
  measured_host bare;  // the host with the development agent
  measured_host empty;
  measured_host inbound;
  measured_host outbound;
  std::vector<measured_host> others = {};

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

// What a host has built of the input, in bytes; 0 for one that builds nothing.
std::size_t bytes_built(const programs& all, const measured_host& host, const std::string& input) {
  const std::filesystem::path dump = all.folder + "dump";
  std::filesystem::remove(dump);
  std::string ignored;
  cpu_time(host, {"--dump", dump.string()}, input, ignored);
  return std::filesystem::exists(dump) ? std::filesystem::file_size(dump) : 0;
}

// Returns microseconds per message. All hosts must have built the same number of bytes.
void compare_inbound(const programs& all, int inputs, std::size_t rounds) {
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
  std::string built_by_first, ignored;
  std::size_t built_by_us = 0;
  std::vector<candidate> candidates = {
      {all.inbound.name,
       [&] { return cpu_time(all.inbound, {}, file, built_by_first) / messages; }},
      {all.host.name, [&] { return cpu_time(all.host, {}, file, ignored) / messages; }}};
  for (const measured_host& host : all.others) {
    candidates.push_back(
        {host.name, [&, messages] { return cpu_time(host, {}, file, ignored) / messages; }});
  }
  compare("inbound/" + std::to_string(inputs) + " inputs", rounds, candidates);
  std::ifstream(all.folder + "built") >> built_by_us;
  const auto check = [&](const measured_host& host, const std::string& built) {
    if (built == std::to_string(built_by_us)) return;
    give_up("the hosts have built different messages: " + std::to_string(built_by_us) +
            " bytes, and " + host.name + ' ' + built);
  };
  check(all.inbound, built_by_first.substr(0, built_by_first.find('\n')));
  for (const measured_host& host : all.others) {
    const std::size_t built = bytes_built(all, host, file);
    if (built != 0) check(host, std::to_string(built));
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

void compare_outbound(const programs& all, int inputs, std::size_t rounds) {
  const std::string payload = payload_of(inputs);
  const int count = static_cast<int>(bytes_in_a_run / 3 / payload.size()) + 1;
  all.order(payload, count);
  std::string first_said, we_said;
  const std::vector<std::string> arguments = {all.folder + "payload", std::to_string(count)};
  compare("outbound/" + std::to_string(inputs) + " inputs", rounds,
          {{all.outbound.name,
            [&] { return cpu_time(all.outbound, arguments, "/dev/null", first_said) / count; }},
           {all.host.name, [&] { return cpu_time(all.host, {}, "/dev/null", we_said) / count; }}});
  all.order({}, 0);
  if (first_said.size() != we_said.size()) give_up("the hosts have said different things");
}

// Of hosts that do nothing, and of those that have dealt with one page.
void compare_lives(const programs& all, bool quick) {
  const std::string request = frames_of({make_requests(1).front()});
  std::vector<candidate> starts, memory;
  std::vector<measured_host> hosts = {all.empty, all.bare, all.inbound};
  hosts.insert(hosts.end(), all.others.begin(), all.others.end());
  for (const measured_host& host : hosts) {
    starts.push_back({host.name, [host] { return lifetime(host); }});
    memory.push_back({host.name, [host, request] { return peak(host, request); }});
  }
  compare("start/to end", quick ? 5 : 301, starts);
  compare("memory/peak", 3, memory);
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
    std::printf("growth/%d inputs,%s,%.3f,\n", inputs, all.host.name.c_str(), cost);
    if (judge && cost > least * allowed) give_up("the cost per byte grows with the message");
    least = std::min(least, cost);
  }
  std::string input;
  const std::string set = frames_of(make_requests(40));
  while (input.size() < bytes_in_a_run / together * 4) input += set;
  const double total = cpu_time_together(all.host, together, input);
  const double cost = total * 1000 / static_cast<double>(input.size() * together);
  std::printf("growth/40 inputs in %zu hosts,%s,%.3f,\n", together, all.host.name.c_str(), cost);
  if (judge && cost > least * allowed * 1.5) {
    give_up("the cost per byte grows with the number of hosts");
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::string here = platform::module_folder();
  programs all = {here + "bench/cost/",
                  {"cfhost", here + "bench/cost/cfhost", {}},
                  {"cfhost", here + "cfhost", {}},
                  {"empty program", here + "peer_empty", {}},
                  {"C++ from libraries", here + "peer_inbound", {}},
                  {"C++ from libraries", here + "peer_outbound", {}}};
  std::vector<std::string> words(argv + 1, argv + argc);
  const bool quick = !words.empty() && words[0] == "--quick";
  for (auto word = words.begin() + (quick ? 1 : 0); word != words.end();) {
    if (*word != "--host" || words.end() - word < 3) give_up("what is meant by " + *word + '?');
    const auto end = std::find(word + 3, words.end(), "--host");
    all.others.push_back({word[1], word[2], {word + 3, end}});
    word = end;
  }
  const std::size_t rounds = quick ? 1 : 9;
  for (const int inputs : {1, 40, 4000}) compare_inbound(all, inputs, rounds);
  for (const int inputs : {1, 40, 4000}) compare_outbound(all, inputs, rounds);
  compare_lives(all, quick);
  show_growth(all, !quick);
}
