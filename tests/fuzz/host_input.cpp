// Bytes of standard input up to the messages that the agent gets, through the real reader, joiner
// and dispatcher.

#include <cstdio>
#include <vector>

#include "bridge/dispatcher.h"
#include "messages/client_library.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/fake_platform.h"
#include "tests/support/payload.h"
#include "tools/request_cutter.h"
#include "transport/frame_reader.h"

namespace {

using texts = std::vector<std::string>;

// Keeps the form of each message, which has to be read as the same.
struct agent final : iCfClient {
  std::int32_t addObserver(iCfClientObs*) override { return 0; }

  std::int32_t post(iCfMsg* message) override {
    memory_sink sink, again;
    if (message->write(sink.stream)) {
      odd_stream stream(sink.bytes);
      require(message->read(stream) && message->write(again.stream), "a form can be read");
      require(again.bytes == sink.bytes, "a form is read as it was written");
    }
    forms.push_back(sink.bytes);
    require(message->release() == 0, "a message is posted with one reference");
    return 0;
  }

  texts forms;
};

texts read_all(std::string bytes) {
  texts messages;
  std::FILE* const input = fmemopen(bytes.data(), bytes.size(), "r");
  for (std::string m; read_message(m, input) == read_complete;) messages.push_back(m);
  std::fclose(input);
  return messages;
}

// The forms of the messages that the requests become.
texts dispatch(texts requests, bool diagnostics) {
  agent client;
  agent_client = &client;
  fake::reset(diagnostics);
  for (std::string& request : requests) dispatch_method(request);
  require(client.forms.size() <= requests.size(), "a request gives one message");
  return client.forms;
}

// The frames of a request, whose id is new: earlier inputs may have left messages unfinished.
std::string frames_of(std::string_view request, std::size_t envelope_size) {
  static unsigned count = 0;
  std::string frames, envelope;
  request_cutter cutter(request, "request " + std::to_string(++count), envelope_size);
  while (cutter.next(envelope)) frames += make_frame(envelope);
  return frames;
}

}  // namespace

// The input is a request, or behind a zero the bytes of the stream.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = text_of(data, size);
  const bool is_request = size > 0 && *data != 0;
  fake::reset(size % 2 == 0);
  const texts messages = read_all(is_request ? frames_of(input, min_request_envelope + size % 512)
                                             : std::string(input.substr(size > 0 ? 1 : 0)));
  require(!is_request || messages == texts{std::string(input).c_str()}, "a request arrives");
  require(dispatch(messages, false) == dispatch(messages, true), "diagnostics change nothing");
  return 0;
}
