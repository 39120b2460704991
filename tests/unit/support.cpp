#include "tests/unit/support.h"

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
  std::string complaint;
  auto replies = replies_in(frames, complaint);
  EXPECT_EQ(complaint, "");
  return replies;
}
