// A client library with one fault, which the first word of the file "fault" beside it names.
// Without that file it has none.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

#include "messages/commands.h"
#include "messages/library/received_object.h"
#include "messages/website.h"
#include "platform/exported.h"
#include "platform/module_folder.h"

namespace {

std::string fault() {
  std::string word;
  std::ifstream(platform::module_folder() + "fault") >> word;
  return word;
}

void* nowhere() {
  static volatile std::uintptr_t address = 4096;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): no object lies there
  return reinterpret_cast<void*>(address);
}

void perform(const std::string& what) {
  if (what == "crash") *static_cast<volatile int*>(nowhere()) = 1;
  if (what == "hang") std::this_thread::sleep_for(std::chrono::seconds(30));
  if (what == "exit") std::_Exit(3);
}

// Answers to one name with the given address, whatever it is.
struct strange_object final : message_of<strange_object, iCfMsg> {
  strange_object(const cfName& n, void* record) : answered(n), record_(record) {}
  void* query(const cfName& n) override { return n == answered ? record_ : iCfMsg::query(n); }
  cfName answered;
  void* record_;
};

// Answers to every name.
struct careless_object final : message_of<careless_object, iCfMsg> {
  void* query(const cfName&) override { return this; }
};

void notify_of_form(iCfClientObs& observer, const cfName& type, std::size_t size,
                    std::int32_t length) {
  byte_sink sink(sizeof(npc_packet));
  cfOStream stream = sink.stream();
  write_type(stream, type);
  byte_list packet = sink.take();
  packet.resize(std::min(packet.size(), sizeof(npc_packet) + size));
  npc_record record;
  record.packet = reinterpret_cast<npc_packet*>(packet.data());
  if (length == 0) length = static_cast<std::int32_t>(packet.size() - sizeof(npc_packet));
  std::memcpy(packet.data() + offsetof(npc_packet, length), &length, sizeof length);
  strange_object object(npc_record::type_name, &record);
  observer.notify(&object);
}

void notify_of_settings(iCfClientObs& observer) {
  received_object<set_values_record> object;
  object.record.has_settings = 1;
  object.record.settings.set(u"a", u"1");
  object.record.settings.set(u"b", u"2");
  if (fault() == "settings-order") {
    auto* const pairs = const_cast<text_map::pair*>(object.record.settings.map().begin());
    std::swap(pairs[0], pairs[1]);
  }
  if (fault() == "settings-table") std::memset(static_cast<void*>(&object.record.settings), 0, 8);
  observer.notify(&object);
}

void notify_of(const std::string& what, iCfClientObs& observer) {
  npc_record without_packet;
  careless_object careless;
  strange_object unknown(iCfMsg::type_name, nullptr),
      record(coffer_data_record::type_name, nowhere()),
      packet(npc_record::type_name, &without_packet);
  if (what == "object") observer.notify(static_cast<iCfMsg*>(nowhere()));
  if (what == "null") observer.notify(nullptr);
  if (what == "careless") observer.notify(&careless);
  if (what == "unknown") observer.notify(&unknown);
  if (what == "record") observer.notify(&record);
  if (what == "packet") observer.notify(&packet);
  if (what == "type") notify_of_form(observer, cfName(u"msg::CfMsgNothing"), 1000, 0);
  if (what == "form") notify_of_form(observer, CfMsgWebsite::type_name, 1000, 0);
  if (what == "negative") notify_of_form(observer, CfMsgOpenUrl::type_name, 1000, -1);
  if (what == "length") notify_of_form(observer, CfMsgOpenUrl::type_name, 8, 60 << 20);
  notify_of_settings(observer);
}

struct client final : implements<client, iCfClient> {
  std::int32_t addObserver(iCfClientObs* given) override {
    observer = given;
    notify_of(fault(), *observer);
    if (fault() == "observer") observer->deletingDestructor(free_memory);
    return 0;
  }

  std::int32_t post(iCfMsg* message) override {
    const std::string what = fault();
    perform(what == "post-crash" ? "crash" : what == "post-hang" ? "hang" : "");
    if (what == "output") std::puts("hello"), std::fflush(stdout);
    if (what == "change") std::memset(reinterpret_cast<unsigned char*>(message) + 16, 7, 1);
    if (what == "beside") reinterpret_cast<unsigned char*>(message)[-8] = 7;
    if (what == "destroy") return message->deletingDestructor(free_memory), 0;
    if (what == "keep") return 0;
    if (what == "decrease") return message->decRef();
    byte_sink form;
    cfOStream stream = form.stream();
    message->write(stream);
    message->release();
    if (what == "twice") message->release();
    if (what == "late") message->query(iCfMsg::type_name);
    return 0;
  }

  ~client() {
    const std::string what = fault();
    if (what == "end-late") std::this_thread::sleep_for(std::chrono::milliseconds(700));
    perform(what.substr(0, 4) == "end-" ? what.substr(4) : "");
  }

  iCfClientObs* observer = nullptr;
};

struct root final : implements<root, cfApi> {
  void* getInterface(const cfName& name) override {
    if (fault() == "no-interface") return nullptr;
    return name == client_interface || fault() == "any" ? &the_client : nullptr;
  }
  client the_client;
};

}  // namespace

extern "C" PLATFORM_EXPORTED cfApi* Api() {
  static root instance;
  perform(fault());
  return fault() == "no-api" ? nullptr : &instance;
}
