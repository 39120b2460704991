#include "tests/unit/support.h"

#include <algorithm>

#include "transport/base64.h"
#include "transport/reassembly.h"
#include "transport/reply_writer.h"

namespace {

std::string picture(const propsW_t& bag) {
  std::string text = "|" + std::to_string(bag.size());
  for (const text_map::pair& p : bag.map()) {
    if (p.value_length > 0) text += " " + shown(p.key_text()) + "=" + shown(p.value_text());
  }
  return text;
}

}  // namespace

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

std::string picture(const CfMsgWebsite& message) {
  std::string text = shown(message.sender) + picture(message.props);
  for (const propsW_t& bag : message.inputs) text += picture(bag);
  const CfWndPos& pos = message.pos;
  return text + "|" + std::to_string(pos.flags) + "," + std::to_string(pos.x) + "," +
         std::to_string(pos.y);
}

file_pointer file_with(std::string_view bytes) {
  file_pointer file(std::tmpfile(), std::fclose);
  std::fwrite(bytes.data(), 1, bytes.size(), file.get());
  std::rewind(file.get());
  return file;
}

std::string reassemble(std::string envelope) {
  std::string text;
  const std::int32_t result = reassemble_fragment(envelope.data(), text);
  return shown(text) + "|" + std::to_string(result);
}

std::string received_reply::text() const {
  std::string decoded(encoded.size(), '\0');
  auto length = static_cast<std::int32_t>(decoded.size());
  base64_decode(encoded.data(), decoded.data(), &length, encoded.data() + encoded.size());
  return decoded.substr(0, static_cast<std::size_t>(length));
}

std::vector<received_reply> replies_in(std::string_view stream) {
  constexpr std::string_view data = R"(,"data":")";
  std::vector<received_reply> replies;
  while (stream.size() >= 4) {
    std::uint32_t size = 0;
    std::memcpy(&size, stream.data(), 4);
    const std::string_view envelope = stream.substr(4, size);
    stream.remove_prefix(std::min(stream.size(), std::size_t{4} + size));
    const std::string id(envelope.substr(25, 32));
    auto reply = std::find_if(replies.begin(), replies.end(), [&](auto& r) { return r.id == id; });
    if (reply == replies.end()) reply = replies.insert(reply, {id, {}, {}, false});
    EXPECT_FALSE(reply->complete) << "a frame behind the last one";
    const std::size_t at = envelope.find(data) + data.size();
    const std::string_view piece = envelope.substr(at, envelope.size() - 2 - at);
    reply->complete = envelope.find("\"final\"") != std::string::npos;
    const int number = reply->complete ? -1 : static_cast<int>(reply->sizes.size());
    EXPECT_EQ(envelope, make_reply_packet(id, piece, number));
    reply->encoded += piece;
    reply->sizes.push_back(envelope.size());
  }
  EXPECT_EQ(stream, "") << "a header that is cut";
  return replies;
}
