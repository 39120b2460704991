// Makes the lines of a capture from the bytes that pass.
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

  // The lines, each with its end, for everything that these bytes complete.
  std::string take(bool from_host, std::string_view bytes, capture_time time);

  // Bytes of a direction were lost, so the rest of that direction can't be read.
  void lose(bool from_host, std::uint64_t bytes, const std::string& reason);

  // The lines about bytes and messages that were never complete.
  std::string finish(capture_time time);

 private:
  struct direction {
    explicit direction(std::size_t max_envelope) : splitter(max_envelope) {}

    frame_splitter splitter;
    std::map<std::string, std::vector<frame_run>> open;  // frames of unfinished messages, by id
    std::uint64_t came = 0;                              // bytes seen in all
    std::uint64_t read = 0;                              // bytes of frames that were whole
    std::string loss;                                    // why it isn't read any more
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
