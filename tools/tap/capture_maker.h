// Makes the lines of a capture out of the bytes that go by.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/capture_item.h"
#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"

class capture_maker {
 public:
  explicit capture_maker(bool with_values);

  // The lines, each with its end, of what is complete with these bytes.
  std::string take(bool from_host, std::string_view bytes, capture_time time);

  // Bytes of a direction were lost, so nothing of it can be read from here on.
  void lose(bool from_host, std::uint64_t bytes, const std::string& reason);

  // The lines that tell of bytes and messages which were never complete.
  std::string finish(capture_time time);

 private:
  struct direction {
    explicit direction(std::size_t max_envelope) : splitter(max_envelope) {}

    frame_splitter splitter;
    std::map<std::string, std::vector<frame_run>> open;  // frames of unfinished messages, by id
    std::uint64_t came = 0;                              // bytes in all
    std::uint64_t read = 0;                              // bytes of frames that were whole
    std::string loss;                                    // why it is read no more
  };

  direction& side(bool from_host) { return from_host ? from_host_ : from_browser_; }
  std::string take_frame(bool from_host, const std::string& envelope, capture_time time);
  std::string message_line(bool from_host, std::vector<frame_run> frames, std::string message,
                           capture_time time) const;
  std::string leftovers(bool from_host, capture_time time);

  const bool with_values_;
  message_joiner joiner_;
  direction from_browser_;
  direction from_host_;
};
