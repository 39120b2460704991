#include "tools/frame_splitter.h"

#include <cstring>

#include "transport/frame_format.h"

void frame_splitter::feed(std::string_view bytes) {
  bytes_.erase(0, at_);
  dropped_ += at_;
  at_ = 0;
  if (!out_of_step_) bytes_.append(bytes);
}

std::optional<std::string> frame_splitter::next() {
  frame_length length = 0;
  if (out_of_step_ || pending() < sizeof length) return std::nullopt;
  std::memcpy(&length, bytes_.data() + at_, sizeof length);
  announced_ = length;
  out_of_step_ = length > max_envelope_;
  if (out_of_step_ || pending() - sizeof length < length) return std::nullopt;
  std::string envelope = bytes_.substr(at_ + sizeof length, length);
  at_ += sizeof length + length;
  return envelope;
}

std::string frame_splitter::complaint() const {
  const std::string place = " at byte " + std::to_string(dropped_ + at_);
  if (out_of_step_) {
    return "the stream is out of step: the frame" + place + " announces " +
           std::to_string(announced_) + " bytes, more than " + std::to_string(max_envelope_);
  }
  if (pending() == 0) return {};
  return "the stream ends inside the frame" + place + ", after " + std::to_string(pending()) +
         " bytes of it";
}
