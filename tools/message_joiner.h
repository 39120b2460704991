// Joins the pieces of messages of both directions: requests to a host and its notifications.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

// What is kept of unfinished messages: base64 text in bytes, and their number.
constexpr std::size_t max_joined_text = std::size_t{64} * 1024 * 1024;
constexpr std::size_t max_open_messages = 4096;

struct parsed_envelope {
  bool from_host = false;  // a piece of a notification, not of a request
  std::string id;
  std::string piece;
  std::int32_t number = 0;  // counts only unless `last`
  bool last = false;
};

// Reads the envelope of a frame. False, with the reason in `error`, when it isn't one.
bool parse_envelope(const std::string& text, parsed_envelope& e, std::string& error);

enum class join_result { stored, complete, refused };

class message_joiner {
 public:
  // Adds a piece; on `complete` the decoded text is in `message`, on `refused` the reason in
  // `error` and the piece is dropped. Notifications number their pieces without a gap, requests
  // need not.
  join_result add(const parsed_envelope& e, std::string& message, std::string& error);

  std::size_t unfinished() const { return open_.size(); }

 private:
  struct gathered {
    std::string text;
    std::int32_t next_number = 0;
  };

  std::map<std::string, gathered> open_;  // by direction and id
  std::size_t text_size_ = 0;
};
