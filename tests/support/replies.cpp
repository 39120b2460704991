#include "tests/support/replies.h"

#include <utility>

#include "tools/frame_splitter.h"
#include "tools/message_joiner.h"
#include "transport/frame_format.h"

std::vector<received_reply> replies_in(std::string_view frames, std::string& complaint) {
  frame_splitter splitter(max_output_size);
  message_joiner joiner;
  std::vector<received_reply> replies;
  received_reply reply;
  parsed_envelope e;
  splitter.feed(frames);
  while (const auto frame = splitter.next()) {
    reply.sizes.push_back(frame->size());
    const bool readable = parse_envelope(*frame, e, complaint);
    const join_result result =
        readable ? joiner.add(e, reply.text, complaint) : join_result::refused;
    if (result == join_result::refused || !e.from_host) return complaint += " (refused)", replies;
    if (result == join_result::complete) replies.push_back(std::exchange(reply, {}));
  }
  complaint = splitter.complaint() + (joiner.unfinished() > 0 ? "a reply isn't whole" : "");
  return replies;
}
