#include "tools/request_cutter.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "transport/codecs/base64.h"

namespace {

constexpr std::string_view final_mark = R"("final")";

std::string encode(std::string_view text) {
  const auto size = static_cast<std::int32_t>(text.size());
  std::int32_t length = base64_encoded_length(size);
  std::string encoded(static_cast<std::size_t>(length), '\0');
  (void)base64_encode(text.data(), size, encoded.data(), &length);
  return encoded;
}

std::string make_envelope(std::string_view id, std::string_view fragment, std::string_view piece) {
  std::string envelope = R"({"id":")";
  envelope.append(id).append(R"(","fragment":)").append(fragment);
  envelope.append(R"(,"msg":")").append(piece).append(R"("})");
  return envelope;
}

}  // namespace

// No number is longer than the mark of the last piece, so what fits beside the mark always fits.
request_cutter::request_cutter(std::string_view text, std::string id, std::size_t envelope_size)
    : id_(std::move(id)),
      encoded_(encode(text)),
      room_(envelope_size - make_envelope(id_, final_mark, {}).size()) {}

bool request_cutter::next(std::string& envelope) {
  if (done_) return false;
  const std::string_view piece = std::string_view(encoded_).substr(at_, room_);
  at_ += piece.size();
  done_ = at_ == encoded_.size();
  envelope = make_envelope(id_, done_ ? final_mark : std::to_string(number_++), piece);
  return true;
}

std::string make_frame(std::string_view envelope) {
  const auto length = static_cast<frame_length>(envelope.size());
  std::string frame(sizeof length, '\0');
  std::memcpy(frame.data(), &length, sizeof length);
  return frame.append(envelope);
}
