// A client library that does as little as possible. It asks each posted message for its form and
// drops it; at its end it writes the total number of bytes into the file "built". At its start it
// notifies of the file "payload" beside it as often as the file "count" says.
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "messages/agent_interface.h"
#include "messages/library/received_object.h"
#include "platform/exported.h"
#include "platform/module_folder.h"

namespace {

class dropping_sink final : public implements<dropping_sink, cfSink> {
 public:
  bool write_bytes(const void* bytes, std::uint64_t size) override {
    if (size > bytes_.size() - used_) bytes_.resize(2 * (used_ + size));
    std::memcpy(bytes_.data() + used_, bytes, size);
    used_ += size;
    return true;
  }
  // Returns how many bytes there were.
  std::size_t drop() { return std::exchange(used_, 0); }

 private:
  std::vector<unsigned char> bytes_;
  std::size_t used_ = 0;
};

class cost_client final : public implements<cost_client, iCfClient> {
 public:
  ~cost_client() { std::ofstream(platform::module_folder() + "built") << built_; }

  std::int32_t addObserver(iCfClientObs* observer) override {
    const std::string folder = platform::module_folder();
    int count = 0;
    std::ifstream(folder + "count") >> count;
    if (count == 0) return 0;
    std::ifstream file(folder + "payload", std::ios::binary);
    byte_list packet(sizeof(npc_packet));
    packet.insert(packet.end(), std::istreambuf_iterator<char>(file), {});
    carried_form object(std::move(packet));
    while (count-- > 0) observer->notify(&object);
    return 0;
  }

  std::int32_t post(iCfMsg* message) override {
    cfOStream stream{0, &sink_, 0, 1};
    message->write(stream);
    message->release();
    built_ += sink_.drop();
    return 0;
  }

 private:
  dropping_sink sink_;
  std::size_t built_ = 0;
};

class cost_api final : public implements<cost_api, cfApi> {
 public:
  void* getInterface(const cfName& name) override {
    return name == client_interface ? &client_ : nullptr;
  }

 private:
  cost_client client_;
};

}  // namespace

extern "C" PLATFORM_EXPORTED cfApi* Api() {
  static cost_api api;
  return &api;
}
