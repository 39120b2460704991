// Cuts a stream of bytes back into the envelopes of its frames.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

class frame_splitter {
 public:
  // If an envelope has more than `max_envelope` bytes, the stream counts as out of step.
  explicit frame_splitter(std::size_t max_envelope) : max_envelope_(max_envelope) {}

  void feed(std::string_view bytes);

  // The next envelope; nothing while its frame isn't whole, and nothing more once the stream is out
  // of step.
  std::optional<std::string> next();

  bool out_of_step() const { return out_of_step_; }

  // What is wrong at the end of the stream, or so far if it is out of step. Empty if the stream
  // ends between two frames.
  std::string complaint() const;

 private:
  std::size_t pending() const { return bytes_.size() - at_; }

  const std::size_t max_envelope_;
  std::string bytes_;
  std::size_t at_ = 0;           // bytes_ before it have been returned
  std::uint64_t dropped_ = 0;    // bytes of the stream that came before bytes_
  std::uint64_t announced_ = 0;  // length in the latest header
  bool out_of_step_ = false;
};
