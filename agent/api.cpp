// The library's export and the objects behind it.

#include <cstdio>

#include "agent/coffer_file.h"
#include "agent/delivery.h"
#include "agent/form_reader.h"
#include "messages/agent_interface.h"
#include "platform/exported.h"
#include "platform/module_folder.h"

namespace {

constexpr char coffer_file_name[] = "cfagent.json";

class client final : public implements<client, iCfClient> {
 public:
  explicit client(delivery& d) : delivery_(d) {}

  std::int32_t addObserver(iCfClientObs* observer) override {
    return delivery_.start(observer) ? 0 : 1;
  }

  std::int32_t post(iCfMsg* message) override {
    std::size_t form_size = 0;
    owned_message request = take_message(message, form_size);
    if (request == nullptr) return 1;
    return delivery_.post(std::move(request), form_size) ? 0 : 1;
  }

 private:
  delivery& delivery_;
};

class agent final : public implements<agent, cfApi> {
 public:
  // Null, after a message on standard error, if the coffer's file can't be used.
  static std::unique_ptr<agent> make() {
    auto made = std::make_unique<agent>();
    std::string problem;
    const std::string folder = platform::module_folder();
    // A relative path would name a file in the working directory.
    if (folder.empty()) {
      problem = "can't find out where the library lies";
    } else if (load_coffer(folder + coffer_file_name, made->coffer_, problem)) {
      return made;
    }
    std::fprintf(stderr, "cfagent: %s (correct the file, or remove it to get a demo coffer)\n",
                 problem.c_str());
    return nullptr;
  }

  void* getInterface(const cfName& name) override {
    return name == client_interface ? static_cast<iCfClient*>(&client_) : nullptr;
  }

 private:
  coffer coffer_;
  responder responder_{coffer_};
  delivery delivery_{responder_};  // its thread ends before what it uses
  client client_{delivery_};
};

}  // namespace

// The agent ends when the library is unloaded.
extern "C" PLATFORM_EXPORTED cfApi* Api() {
  static const std::unique_ptr<agent> instance = agent::make();
  return instance.get();
}
