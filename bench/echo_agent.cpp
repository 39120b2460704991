// A client library that answers each posted message at once with a notification of the two moments
// that a measurement needs: when the message was posted, and when `notify` was called. A page whose
// sender is "mirror" comes back itself instead.
#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "messages/agent_interface.h"
#include "messages/commands.h"
#include "messages/records.h"
#include "messages/website.h"

namespace {

wide_string nanoseconds_now() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const std::string digits =
      std::to_string(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
  return {digits.begin(), digits.end()};
}

class byte_sink final : public cfSink {
 public:
  bool write_bytes(const void* bytes, std::uint64_t size) override {
    const auto* const first = static_cast<const unsigned char*>(bytes);
    bytes_.insert(bytes_.end(), first, first + size);
    return true;
  }
  const std::vector<unsigned char>& bytes() const { return bytes_; }

 private:
  std::vector<unsigned char> bytes_;
};

std::vector<unsigned char> form_of(iCfMsg& message) {
  byte_sink sink;
  cfOStream stream{0, &sink, 0, 1};
  message.write(stream);
  return sink.bytes();
}

// A received object that carries one payload.
class carrier final : public iCfMsg {
 public:
  explicit carrier(const std::vector<unsigned char>& payload)
      : bytes_(npc_packet::payload_offset + payload.size()), packet_(bytes_.data()) {
    const auto length = static_cast<std::int32_t>(payload.size());
    std::memcpy(&bytes_[npc_packet::length_offset], &length, sizeof length);
    std::memcpy(bytes_.data() + npc_packet::payload_offset, payload.data(), payload.size());
  }

  std::int32_t release() override { return iCfMsg::release(); }
  void* query(const cfName& n) override { return n == npc_name ? record() : iCfMsg::query(n); }

 private:
  // The record whose field at npc_record::packet_offset is `packet_`.
  void* record() { return reinterpret_cast<unsigned char*>(&packet_) - npc_record::packet_offset; }

  std::vector<unsigned char> bytes_;
  const unsigned char* packet_;
};

class echo_client final : public iCfClient {
 public:
  std::int32_t addObserver(iCfClientObs* observer) override {
    observer_ = observer;
    report(nanoseconds_now());
    return 0;
  }

  std::int32_t post(iCfMsg* message) override {
    const wide_string posted = nanoseconds_now();
    const std::vector<unsigned char> form = form_of(*message);
    const auto* const page = static_cast<CfMsgWebsite*>(message->query(CfMsgWebsite::type_name));
    const bool mirror = page != nullptr && page->sender == u"mirror";
    message->release();
    if (mirror) {
      carrier object(form);
      observer_->notify(&object);
    } else {
      report(posted);
    }
    return 0;
  }

 private:
  void report(const wide_string& posted) {
    CfMsgOpenUrl times;
    times.uuid = posted;
    times.url = nanoseconds_now();
    carrier object(form_of(times));
    observer_->notify(&object);
  }

  iCfClientObs* observer_ = nullptr;
};

class echo_api final : public cfApi {
 public:
  void* getInterface(const cfName& name) override {
    return name == client_interface ? &client_ : nullptr;
  }

 private:
  echo_client client_;
};

}  // namespace

extern "C" [[gnu::visibility("default")]] cfApi* Api() {
  static echo_api api;
  return &api;
}
