// A client library for the tests: writes down what is posted and delivers what its script says.
// The file "script" beside it holds one order per line, payloads in hexadecimal:
//
//   no-api, no-interface              returns null for it
//   quiet                             posted messages are not written down
//   blind                             posted messages are not even asked for their form
//   WHEN deliver PART...              notifies of one object that has these parts
//   WHEN threads COUNT TIMES PAYLOAD  notifies on COUNT threads, TIMES times each; thread 0 puts an
//                                     'A' in place of the payload's last letter, thread 1 a 'B'
//   WHEN leave NUMBER                 ends the process with that exit value
//   WHEN cancelled PAYLOAD            notifies on a thread that is being cancelled
//   WHEN exit-thread                  ends the calling thread
//   WHEN ignore NUMBER                ignores the signal of that number
//   WHEN sleep NUMBER                 waits for NUMBER milliseconds
//
// WHEN is load, register (on a thread of the library), post (inside each call of it) or unload. A
// PART is data, values WORD or a PAYLOAD, which may be followed by length NUMBER or by masked: then
// its bits are inverted except during the call. The file "report" gets "post NAME
// WRITTEN BYTES REFERENCES-LEFT" and "notified RESULT REFERENCES-TAKEN" (by deliver).

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <mutex>
#include <sstream>
#include <thread>
#include <vector>

#include "messages/agent_interface.h"
#include "messages/library/byte_sink.h"
#include "platform/exported.h"
#include "platform/library_threads.h"
#include "platform/module_folder.h"
#include "tests/end_to_end/bytes.h"
#include "tests/end_to_end/ending_threads.h"

namespace {

// Answers to the names of the parts that it was given. Has to stay where it was made.
struct delivered_object final : message_of<delivered_object, iCfMsg> {
  delivered_object() {
    data.fUpdate = 1;
    data.agPid = 4242;
    data.agStatus = 2;
    data.dbStatus = -1;
    data.settings.set(u"pwdman.enabled", u"true");
    data.default_settings.set(u"pwdman.enabled", u"false");
    values.settings.assign(data.settings);
  }

  void add(const std::string& part, std::istream& words) {
    std::int32_t length = 0;
    if (part == "data") {
      records.emplace_back(coffer_data_record::type_name, &data);
    } else if (part == "values" && words >> values.has_settings) {
      records.emplace_back(set_values_record::type_name, &values);
    } else if (part == "length" && words >> length) {
      set_length(length);
    } else if (part == "masked") {
      masked = true;
    } else {
      carry(from_hex(part));
    }
  }

  // The packet ends with the payload's last byte, so that reading past it is noticed.
  void carry(const std::string& payload) {
    packet.assign(sizeof(npc_packet) + payload.size(), '\xEE');
    payload.copy(packet.data() + sizeof(npc_packet), payload.size());
    set_length(static_cast<std::int32_t>(payload.size()));
    carried.packet = reinterpret_cast<const npc_packet*>(packet.data());
    records.emplace_back(npc_record::type_name, &carried);
  }

  void* query(const cfName& n) override {
    for (const auto& [name, record] : records) {
      if (name == n) return record;
    }
    return iCfMsg::query(n);
  }
  std::int32_t release() override { return decRef(); }

  void turn_bits() {
    for (std::size_t i = sizeof(npc_packet); masked && i < packet.size(); ++i) {
      packet[i] = static_cast<char>(~packet[i]);
    }
  }

  void set_length(std::int32_t length) {
    std::memcpy(packet.data() + offsetof(npc_packet, length), &length, sizeof length);
  }

  std::vector<char> packet;
  bool masked = false;
  npc_record carried;
  coffer_data_record data;
  set_values_record values;
  std::vector<std::pair<cfName, void*>> records;
};

class probe final : public implements<probe, iCfClient> {
 public:
  probe() {
    std::ifstream script(folder_ + "script");
    for (std::string line; std::getline(script, line);) script_.push_back(line);
    perform_all("load");
  }

  ~probe() {
    stopping_ = true;
    if (worker_.joinable()) worker_.join();
    perform_all("unload");
  }

  bool told(const std::string& order) const {
    return std::find(script_.begin(), script_.end(), order) != script_.end();
  }

  std::int32_t addObserver(iCfClientObs* observer) override {
    observer_ = observer;
    // With a thread the library may stay in the process, so it starts one only if needed.
    const bool has_orders = std::any_of(script_.begin(), script_.end(), [](const auto& line) {
      return line.starts_with("register");
    });
    if (!has_orders) return 0;
    if (!platform::prepare_for_threads()) return 1;
    worker_ = std::thread([this] { perform_all("register"); });
    return 0;
  }

  std::int32_t post(iCfMsg* message) override {
    if (told("blind")) return message->release(), perform_all("post"), 0;
    byte_sink sink;
    cfOStream stream = sink.stream();
    const bool written = message->write(stream);
    const wide_view name = message->name().text();
    std::ostringstream line;
    line << "post " << std::string(name.begin(), name.end()) << ' ' << written << ' '
         << to_hex(sink.take()) << ' ' << message->release();
    if (!told("quiet")) report(line.str());
    perform_all("post");
    return 0;
  }

 private:
  void report(const std::string& line) {
    const std::lock_guard<std::mutex> guard(report_mutex_);
    std::ofstream(folder_ + "report", std::ios::app) << line + '\n';
  }

  void perform_all(const std::string& when) {
    for (const std::string& line : script_) {
      std::istringstream words(line);
      std::string moment, action;
      words >> moment >> action;
      if (moment != when) continue;
      if (action == "deliver") deliver(words);
      if (action == "threads") deliver_on_threads(words);
      if (action == "cancelled") deliver_while_cancelled(words);
      if (action == "exit-thread") exit_thread();
      int number = 0;
      if (action == "leave" && words >> number) std::_Exit(number);
      if (action == "ignore" && words >> number) std::signal(number, SIG_IGN);
      if (action == "sleep" && words >> number) {
        std::this_thread::sleep_for(std::chrono::milliseconds(number));
      }
    }
  }

  void deliver(std::istream& words) {
    delivered_object object;
    for (std::string part; words >> part;) object.add(part, words);
    object.turn_bits();
    const std::int32_t result = observer_->notify(&object);
    object.turn_bits();
    report("notified " + std::to_string(result) + ' ' + std::to_string(object.addRef() - 1));
  }

  void deliver_while_cancelled(std::istream& words) {
    std::string payload;
    words >> payload;
    work_on_cancelled_thread([&] { notify_of(from_hex(payload)); });
  }

  void notify_of(const std::string& payload) {
    delivered_object object;
    object.carry(payload);
    observer_->notify(&object);
  }

  void deliver_on_threads(std::istream& words) {
    int count = 0, times = 0;
    std::string payload;
    words >> count >> times >> payload;
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
      std::string own = from_hex(payload);
      own[own.size() - 4] = static_cast<char>('A' + i);
      threads.emplace_back([this, own, times] {
        delivered_object object;
        object.carry(own);
        for (int n = 0; n < times && !stopping_; ++n) observer_->notify(&object);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }

  const std::string folder_ = platform::module_folder();
  std::vector<std::string> script_;
  std::mutex report_mutex_;
  iCfClientObs* observer_ = nullptr;
  std::atomic<bool> stopping_{false};
  std::thread worker_;
};

// Destroyed when the library is unloaded.
probe the_probe;

class root final : public implements<root, cfApi> {
 public:
  void* getInterface(const cfName& name) override {
    return name == client_interface && !the_probe.told("no-interface") ? &the_probe : nullptr;
  }
} the_root;

}  // namespace

extern "C" PLATFORM_EXPORTED cfApi* Api() { return the_probe.told("no-api") ? nullptr : &the_root; }
