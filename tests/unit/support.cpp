#include "tests/unit/support.h"

#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "transport/frame_format.h"
#include "transport/reassembly.h"

std::string form_of(iCfMsg& message) {
  memory_sink sink;
  EXPECT_TRUE(message.write(sink.stream));
  return sink.bytes;
}

std::string null_address() {
  char text[32];
  std::snprintf(text, sizeof text, "%p", static_cast<void*>(nullptr));
  return text;
}

file_pointer file_with(std::string_view bytes) {
  file_pointer file(std::tmpfile(), std::fclose);
  std::fwrite(bytes.data(), 1, bytes.size(), file.get());
  std::rewind(file.get());
  return file;
}

std::string reassemble_in(fragment_store& store, std::string envelope) {
  std::string text;
  const std::int32_t result = reassemble_fragment(envelope.data(), text, store);
  return shown(text) + "|" + std::to_string(result);
}

std::string reassemble(const std::string& envelope) {
  return reassemble_in(process_store(), envelope);
}

std::vector<received_reply> replies_in(std::string_view frames) {
  frame_splitter splitter(max_output_size);
  message_joiner joiner;
  std::vector<received_reply> replies;
  received_reply reply;
  std::string error;
  splitter.feed(frames);
  while (const auto frame = splitter.next()) {
    parsed_envelope e;
    EXPECT_TRUE(parse_envelope(*frame, e, error) && e.from_host) << error;
    const join_result result = joiner.add(e, reply.joined, error);
    EXPECT_NE(result, join_result::refused) << error;
    reply.sizes.push_back(frame->size());
    if (result == join_result::complete) replies.push_back(std::exchange(reply, {}));
  }
  EXPECT_EQ(splitter.complaint(), "");
  EXPECT_EQ(joiner.unfinished(), 0U);
  return replies;
}
