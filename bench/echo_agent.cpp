// A client library that answers each posted message at once with a notification of the two moments
// that a measurement needs: when the message was posted, and when `notify` was called. A page whose
// sender is "mirror" is sent back itself instead.
#include <chrono>
#include <string>

#include "messages/agent_interface.h"
#include "messages/commands.h"
#include "messages/library/received_object.h"
#include "messages/website.h"

namespace {

wide_string nanoseconds_now() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const std::string digits =
      std::to_string(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
  return {digits.begin(), digits.end()};
}

class echo_client final : public implements<echo_client, iCfClient> {
 public:
  std::int32_t addObserver(iCfClientObs* observer) override {
    observer_ = observer;
    report(nanoseconds_now());
    return 0;
  }

  std::int32_t post(iCfMsg* message) override {
    const wide_string posted = nanoseconds_now();
    const auto* const page = static_cast<CfMsgWebsite*>(message->query(CfMsgWebsite::type_name));
    const bool mirror = page != nullptr && page->sender == u"mirror";
    // Asking for the form is part of the measurement.
    const auto object = carry(*message);
    message->release();
    if (mirror) {
      observer_->notify(object.get());
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
    observer_->notify(carry(times).get());
  }

  iCfClientObs* observer_ = nullptr;
};

class echo_api final : public implements<echo_api, cfApi> {
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
