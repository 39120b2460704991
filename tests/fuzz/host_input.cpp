// Follows bytes of standard input up to the messages that the agent gets, through the real reader,
// joiner and dispatcher, and through plain models of these.

#include <cstdio>

#include "bridge/dispatcher.h"
#include "json/writer.h"
#include "messages/loader/client_library.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/host_model.h"
#include "tests/support/fake_platform.h"
#include "tests/support/payload.h"
#include "tools/request_cutter.h"
#include "transport/fragment_store.h"
#include "transport/frame_reader.h"

namespace {

// Keeps a picture of each message, and checks that its form can be read back.
struct agent final : implements<agent, iCfClient> {
  std::int32_t addObserver(iCfClientObs*) override { return 0; }

  std::int32_t post(iCfMsg* message) override {
    const std::string picture = picture_of(*message);
    odd_stream stream(picture);
    require(!message->read(stream) || picture_of(*message) == picture,
            "a form is read as it was written");
    pictures.push_back(picture);
    require(message->release() == 0, "a message is posted with one reference");
    return 0;
  }

  texts pictures;
};

void check_dispatch(std::string request, const platform::screen_point* cursor, bool diagnostics) {
  agent client;
  agent_client = &client;
  fake::reset(diagnostics);
  if (cursor != nullptr) fake::system().cursor = *cursor;
  const std::string expected = plainly_dispatched(request, cursor);
  dispatch_method(request);
  require(client.pictures == (expected.empty() ? texts{} : texts{expected}),
          "a request becomes its message");
}

// Reads everything, and then what the unfinished messages have gathered, so that the next input
// starts afresh.
texts check_reading(std::string stream) {
  open_messages open;
  std::int32_t expected_end = 0, end = 0;
  const texts expected = plainly_read(stream, open, expected_end);
  texts messages;
  std::FILE* const input = fmemopen(stream.data(), stream.size(), "r");
  fragment_store store;
  for (std::string m; (end = read_message(m, input, store)) == read_complete;)
    messages.push_back(m);
  std::fclose(input);
  require(messages == expected && end == expected_end, "frames become these messages");
  for (const auto& [id, piece] : open) {
    std::string frame = R"({"fragment":"final","id":)" + json_quote(id) + "}", text;
    const std::string gathered = plainly_decoded(piece).c_str();
    require(reassemble_fragment(frame.data(), text, store) == 0 && text == gathered,
            "unfinished messages are kept");
  }
  require(store.text_size() == 0, "nothing else is kept");
  return messages;
}

std::string frames_of(std::string_view request, std::size_t envelope_size) {
  std::string frames, envelope;
  request_cutter cutter(request, "request", envelope_size);
  while (cutter.next(envelope)) frames += make_frame(envelope);
  return frames;
}

// Each line is an envelope.
std::string frames_of_lines(std::string_view lines) {
  std::string frames;
  for (;;) {
    const std::size_t end = lines.find('\n');
    frames += make_frame(lines.substr(0, end));
    if (end == lines.npos) return frames;
    lines.remove_prefix(end + 1);
  }
}

}  // namespace

// The input is requests separated by empty lines; after a leading zero byte it is the bytes of the
// stream, and after a one its envelopes.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = text_of(data, size);
  const std::uint8_t first = size > 0 ? *data : 0;
  const platform::screen_point place{7, -9};
  const platform::screen_point* const cursor = size % 3 == 0 ? &place : nullptr;
  fake::reset(size % 2 == 0);
  texts messages;
  if (first > 1) {
    std::string frames;
    texts requests;
    for (std::string_view rest = input; !rest.empty();) {
      const std::string_view request = take_text(rest);
      frames += frames_of(request, min_request_envelope + size % 512);
      if (!request.empty() && request[0] != '\0')
        requests.emplace_back(std::string(request).c_str());
    }
    messages = check_reading(frames);
    require(messages == requests, "requests arrive");
  } else if (size > 0) {
    const std::string_view rest = input.substr(1);
    messages = check_reading(first == 1 ? frames_of_lines(rest) : std::string(rest));
  }
  for (const std::string& request : messages) check_dispatch(request, cursor, size % 2 == 0);
  return 0;
}
