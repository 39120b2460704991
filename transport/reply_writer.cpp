#include "transport/reply_writer.h"

#include "host/diagnostics/diagnostics.h"
#include "platform/platform.h"
#include "platform/wiping.h"
#include "transport/codecs/base64.h"
#include "transport/frame_format.h"
#include "transport/frame_reader.h"
#include "transport/random_id.h"
#include "transport/stdout_lock.h"

checked_mutex stdout_lock;

namespace {

constexpr std::int32_t final_fragment = -1;

// Writes the length and the envelope into the stream's buffer. Logs a short write.
bool put_frame(const std::string& envelope, std::FILE* output) REQUIRES(stdout_lock) {
  const auto length = static_cast<frame_length>(envelope.size());
  if (std::fwrite(&length, 1, sizeof length, output) != sizeof length) {
    if (!dump_off) log_line("Couldn't send string length(%u), abort", length);
    return false;
  }
  if (std::fwrite(envelope.data(), 1, envelope.size(), output) != envelope.size()) {
    if (!dump_off) log_line("Couldn't send string , abort");
    return false;
  }
  return true;
}

// The stream is buffered, so a closed pipe shows only when the frame is flushed. The stream's error
// indicator is cleared for each frame: otherwise the failure of one reply would also end another.
bool write_frame(const std::string& envelope, std::FILE* output) {
  const checked_lock lock(stdout_lock);
  // A write that blocks for ever would hold up the end of the process, and even the main thread if
  // the library notifies from inside a call that it makes.
  const std::size_t size = sizeof(frame_length) + envelope.size();
  if (!platform::wait_for_output(output, size, has_to_serve, abandoned_timeout)) {
    platform::leave_now(0);
  }
  std::clearerr(output);
  const bool put = put_frame(envelope, output);
  std::fflush(output);
  platform::wipe_sent_bytes(output, size);
  if (put && std::ferror(output) != 0) {
    if (!dump_off) log_line("Couldn't send string , abort");
    return false;
  }
  return put;
}

// The part of the envelope that all frames of a reply share.
void put_reply_start(std::string& envelope, std::string_view id) {
  envelope += R"({"reply":"success","id":")";
  envelope += id;
  envelope += R"(","fragment":)";
}

void put_fragment(std::string& envelope, std::int32_t fragment) {
  envelope += fragment < 0 ? R"("final")" : std::to_string(fragment);
  envelope += R"(,"data":")";
}

void put_envelope_end(std::string& envelope) { envelope += R"("})"; }

void put_encoded(std::string& envelope, std::string_view bytes) {
  const auto size = static_cast<std::int32_t>(bytes.size());
  std::int32_t length = base64_encoded_length(size);
  const std::size_t start = envelope.size();
  envelope.resize(start + static_cast<std::size_t>(length));
  base64_encode(bytes.data(), size, envelope.data() + start, &length);
}

// Each frame holds whole groups of base64 characters, so each piece can be encoded by itself, right
// into its frame.
bool send_pieces(std::string_view text, std::string_view id, std::FILE* output) {
  std::string envelope = make_reply_packet(id, {}, final_fragment);
  const std::size_t room = (max_output_size - envelope.size()) / 4 * 3;
  envelope.clear();
  put_reply_start(envelope, id);
  const std::size_t start_size = envelope.size();
  std::int32_t fragment = 0;
  std::size_t start = 0;
  do {
    const std::string_view piece = text.substr(start, room);
    const bool last = start + piece.size() == text.size();
    envelope.resize(start_size);
    put_fragment(envelope, last ? final_fragment : fragment);
    put_encoded(envelope, piece);
    put_envelope_end(envelope);
    if (!write_frame(envelope, output)) return false;
    ++fragment;
    start += piece.size();
  } while (start < text.size());
  return true;
}

}  // namespace

bool send_reply(std::string_view json_text, std::FILE* output) {
  if (!dump_off) log_line("Sending reply to Chrome");
  if (!dump_off) log_line("[%s]", std::string(json_text).c_str());
  // A longer text can't be encoded.
  if (json_text.size() > static_cast<std::size_t>(max_base64_input)) {
    if (!dump_off) log_line("can't alloc base64 encode buffer length=%d. skipping...", -1);
    return false;
  }
  char id[random_id_length];
  random_id(id);
  return send_pieces(json_text, {id, sizeof id}, output);
}

std::string make_reply_packet(std::string_view id, std::string_view piece, std::int32_t fragment) {
  std::string envelope;
  envelope.reserve(max_output_size);
  put_reply_start(envelope, id);
  put_fragment(envelope, fragment);
  envelope += piece;
  put_envelope_end(envelope);
  return envelope;
}
