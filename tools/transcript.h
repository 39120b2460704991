// What cfext shows on standard output. Any thread may write to it; lines stay whole.
#pragma once

#include <string>
#include <string_view>

#include "platform/checked_mutex.h"
#include "tools/message_joiner.h"

// If requests are shown too, an arrow shows each message's direction.
enum class shown_messages { none, answers, all };

class transcript {
 public:
  // With `frames` each frame is shown: an arrow, the envelope's length, and the envelope.
  transcript(bool frames, shown_messages messages) : frames_(frames), messages_(messages) {}

  void comment(std::string_view text);
  void message(bool from_host, std::string_view text);
  void frame(bool from_host, std::string_view envelope);

  // Shows a frame's envelope and, if that completes a message, the message, which is then in
  // `joined`. The reason for a refusal is in `error`.
  join_result take(const std::string& text, const parsed_envelope& e, message_joiner& joiner,
                   std::string& joined, std::string& error);

  // Shows a line unchanged.
  void line(std::string_view mark, std::string_view text);

  bool shows_frames() const { return frames_; }

  // True once something couldn't be written.
  bool failed() const;

 private:
  const bool frames_;
  const shown_messages messages_;
  mutable checked_mutex mutex_;
  bool failed_ GUARDED_BY(mutex_) = false;
};
