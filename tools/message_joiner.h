// Joins the pieces of messages of both directions: requests to a host and its notifications.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

// The limits for unfinished messages: bytes of base64 text, and number of messages.
constexpr std::size_t max_joined_text = std::size_t{64} * 1024 * 1024;
constexpr std::size_t max_open_messages = 4096;

struct parsed_envelope {
  bool from_host = false;  // a piece of a notification, not of a request
  std::string id;
  std::string piece;
  std::int32_t number = 0;  // only meaningful unless `last`
  bool last = false;
};

// Reads the envelope of a frame. False, with the reason in `error`, if it isn't one.
bool parse_envelope(const std::string& text, parsed_envelope& e, std::string& error);

enum class join_result { stored, complete, refused };

class message_joiner {
 public:
  // Adds a piece. On `complete` the decoded text is in `message`. On `refused` the reason is in
  // `error`, and the piece is dropped. The pieces of a notification are numbered without gaps;
  // those of a request need not be.
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
