#include "transport/reply_writer.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "host/diagnostics.h"
#include "platform/platform.h"
#include "platform/wiping.h"
#include "transport/base64.h"
#include "transport/frame_format.h"
#include "transport/random_id.h"
#include "transport/stdout_lock.h"

output_lock stdout_lock;

namespace {

constexpr std::int32_t final_fragment = -1;

// The base64 form of `text`; null when there is no memory for it or the encoder refuses.
std::unique_ptr<char[]> encode(const std::string& text) {
  // Beyond the encoder's range no 32-bit capacity exists, let alone a buffer of it.
  const bool countable = text.size() <= static_cast<std::size_t>(max_base64_input);
  const auto size = static_cast<std::int32_t>(text.size());
  std::int32_t length = countable ? base64_encoded_length(size) + 1 : -1;
  std::unique_ptr<char[]> buffer;
  // Zeroed, which terminates the result.
  if (countable) buffer.reset(new (std::nothrow) char[static_cast<std::size_t>(length)]());
  if (buffer == nullptr) {
    if (!dump_off) log_line("can't alloc base64 encode buffer length=%d. skipping...", length);
    return nullptr;
  }
  if (base64_encode(text.data(), size, buffer.get(), &length) != 0) {
    if (!dump_off) log_line("coudln't encode data to base64 [%s]. skipping...", text.c_str());
    return nullptr;
  }
  return buffer;
}

// Writes the two parts of a frame into the stream's buffer, and logs the one that fell short.
bool put_frame(const std::string& packet, std::FILE* output) REQUIRES(stdout_lock) {
  const auto length = static_cast<frame_length>(packet.size());
  if (std::fwrite(&length, 1, sizeof length, output) != sizeof length) {
    if (!dump_off) log_line("Couldn't send string length(%u), abort", length);
    return false;
  }
  if (std::fwrite(packet.data(), 1, packet.size(), output) != packet.size()) {
    if (!dump_off) log_line("Couldn't send string , abort");
    return false;
  }
  return true;
}

// The stream is buffered, so a dead pipe shows only once the frame is flushed. The indicator is
// cleared for each frame, lest one reply be given up for the failure of another's frame in between.
bool write_frame(const std::string& packet, std::FILE* output) {
  const checked_lock lock(stdout_lock);
  // A write that waits for ever would hold up the end of the process, even the main thread if the
  // library notifies from inside a call of it.
  if (!platform::wait_for_output(output, abandoned_patience)) platform::leave_now(0);
  std::clearerr(output);
  const bool put = put_frame(packet, output);
  std::fflush(output);
  platform::wipe_sent_bytes(output, sizeof(frame_length) + packet.size());
  if (put && std::ferror(output) != 0) {
    if (!dump_off) log_line("Couldn't send string , abort");
    return false;
  }
  return put;
}

bool send_pieces(std::string_view encoded, std::string_view id, std::FILE* output) {
  const std::size_t empty_size = make_reply_packet(id, {}, final_fragment).size();
  if (empty_size >= max_output_size) {
    if (!dump_off) {
      log_line("Empty packet size is larger than max_output_size. Error, skipping reply");
    }
    return false;
  }
  const std::size_t room = max_output_size - empty_size;
  std::int32_t fragment = 0;
  std::size_t start = 0;
  do {
    const std::string_view piece = encoded.substr(start, room);
    const bool last = start + piece.size() == encoded.size();
    const std::string packet = make_reply_packet(id, piece, last ? final_fragment : fragment);
    if (!write_frame(packet, output)) return false;
    ++fragment;
    start += piece.size();
  } while (start < encoded.size());
  return true;
}

}  // namespace

bool send_reply(const std::string& json_text, std::FILE* output) {
  if (!dump_off) log_line("Sending reply to Chrome");
  if (!dump_off) log_line("[%s]", json_text.c_str());
  char id[random_id_length];
  random_id(id);
  const std::unique_ptr<char[]> encoded = encode(json_text);
  return encoded != nullptr && send_pieces(encoded.get(), {id, sizeof id}, output);
}

std::string make_reply_packet(std::string_view id, std::string_view piece, std::int32_t fragment) {
  std::string packet;
  packet.reserve(max_output_size);
  packet += R"({"reply":"success","id":")";
  packet += id;
  packet += R"(","fragment":)";
  packet += fragment < 0 ? R"("final")" : std::to_string(fragment);
  packet += R"(,"data":")";
  packet += piece;
  packet += R"("})";
  return packet;
}
