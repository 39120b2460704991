// What cfext shows on standard output. Any thread may show something; lines stay whole.
#pragma once

#include <string>
#include <string_view>

#include "platform/checked_mutex.h"
#include "tools/message_joiner.h"

class transcript {
 public:
  // With `frames` each frame is shown, as an arrow, the envelope's length, and the envelope. With
  // `both_ways` requests are shown too; then an arrow says which way a message went.
  transcript(bool frames, bool both_ways) : frames_(frames), both_ways_(both_ways) {}

  void comment(std::string_view text);
  void message(bool from_host, std::string_view text);
  void frame(bool from_host, std::string_view envelope);

  // Shows a frame's envelope, and the message if that is complete with it. False, with the reason
  // in `error`, for a frame that isn't in order.
  bool take(const std::string& text, const envelope& e, message_joiner& joiner, std::string& error);

  // True once something couldn't be written.
  bool failed() const;

 private:
  void line(std::string_view mark, std::string_view text);

  const bool frames_;
  const bool both_ways_;
  mutable checked_mutex mutex_;
  bool failed_ GUARDED_BY(mutex_) = false;
};
