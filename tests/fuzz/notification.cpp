// What the agent sends up to the frames that the extension gets, through the real observer and
// reply writer.

#include <cstdio>
#include <cstring>
#include <memory>

#include "bridge/agent_observer.h"
#include "messages/records.h"
#include "messages/website.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/fake_platform.h"
#include "tests/support/payload.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "tools/setup/strict_json.h"
#include "transport/frame_format.h"

namespace {

// Standard output, into memory.
std::string output;

ssize_t write_output(void*, const char* bytes, std::size_t size) {
  output.append(bytes, size);
  return static_cast<ssize_t>(size);
}

// Carries a payload, and answers to no other name.
struct carrier final : iCfMsg {
  explicit carrier(std::string_view payload)
      : packet(new char[npc_packet::payload_offset + payload.size()]()), npc{{}, packet.get()} {
    const auto length = static_cast<std::int32_t>(payload.size());
    std::memcpy(packet.get() + npc_packet::length_offset, &length, sizeof length);
    payload.copy(packet.get() + npc_packet::payload_offset, payload.size());
  }
  std::int32_t release() override { return decRef(); }
  void* query(const cfName& name) override { return name == npc_name ? &npc : nullptr; }

  const std::unique_ptr<char[]> packet;
  struct {
    char unused[npc_record::packet_offset];
    char* packet;
  } npc;
};

// How many notifications went out, each of them whole.
int count_notifications() {
  frame_splitter splitter(max_output_size);
  message_joiner joiner;
  splitter.feed(output);
  std::string text, error;
  envelope e;
  int count = 0;
  while (const auto frame = splitter.next()) {
    require(read_envelope(*frame, e, error) && e.from_host, "an envelope can be read");
    const join_result result = joiner.add(e, text, error);
    require(result != join_result::refused, "pieces are numbered");
    if (result != join_result::complete) continue;
    require(text.starts_with("{\"") && !find_json_fault(text), "a notification is JSON");
    ++count;
  }
  require(splitter.complaint().empty() && joiner.unfinished() == 0, "all frames are whole");
  return count;
}

}  // namespace

// The first byte of the input chooses the type string that is put in front of the payload.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::FILE* const stream =
      fopencookie(nullptr, "w", {nullptr, write_output, nullptr, nullptr});
  std::string_view input = text_of(data, size);
  const std::uint8_t choice = take_byte(input);
  std::string payload(input);
  if (choice % 4 > 1) payload.insert(0, wide_bytes(u"msg::CfMsgWebsite"));
  if (choice % 4 == 3) payload.insert(0, wide_bytes(u"msg::CfMsgWebsiteRsp"));
  stdout = stream;
  output.clear();
  fake::reset(choice >= 128);
  carrier object(payload);
  require(agentObserver.notify(&object) == 0 && object.release() == 0, "one reference is taken");

  CfMsgWebsite page;
  odd_stream form(payload);
  if (choice % 4 == 3) (void)form.readWide();
  const int count = count_notifications();
  require(count == 1 || (count == 0 && !page.read(form)), "a whole form gives one notification");
  return 0;
}
