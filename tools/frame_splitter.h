// Cuts a stream of bytes back into the envelopes of its frames.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class frame_splitter {
 public:
  // A frame with an envelope of more than `max_envelope` bytes means that the stream is out of
  // step.
  explicit frame_splitter(std::size_t max_envelope) : max_envelope_(max_envelope) {}

  void feed(std::string_view bytes);

  // The next envelope; nothing while its frame isn't whole, and once the stream is out of step.
  std::optional<std::string> next();

  bool out_of_step() const { return out_of_step_; }

  // What is wrong at the end of the stream, or so far when it is out of step; empty when it ends
  // between two frames.
  std::string complaint() const;

 private:
  std::size_t pending() const { return bytes_.size() - at_; }

  const std::size_t max_envelope_;
  std::string bytes_;
  std::size_t at_ = 0;           // bytes_ before it have been given out
  std::uint64_t dropped_ = 0;    // bytes of the stream that came before bytes_
  std::uint64_t announced_ = 0;  // length in the latest header
  bool out_of_step_ = false;
};
