// The binary forms: what can be read is written as it was read, and nothing that is cut off is
// taken for whole.

#include <memory>

#include "messages/commands.h"
#include "messages/website.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/payload.h"

namespace {

std::unique_ptr<iCfMsg> make(std::uint8_t choice) {
  if (choice % 5 == 0) return std::make_unique<CfMsgWebsite>();
  if (choice % 5 == 1) return std::make_unique<CfMsgOpenUrl>();
  if (choice % 5 == 2) return std::make_unique<CfMsgRunConsole>(console_open);
  if (choice % 5 == 3) return std::make_unique<CfMsgCfDbCmd>();
  return std::make_unique<CfMsgUnLockDb>();
}

// The form of what could be read, or nothing.
std::string form_read(std::uint8_t choice, std::string_view payload) {
  const auto message = make(choice);
  odd_stream stream(payload);
  memory_sink sink;
  if (!message->read(stream)) return {};
  require(message->write(sink.stream), "what could be read can be written");
  return sink.bytes;
}

void check_form(std::uint8_t choice, std::string_view payload) {
  const std::string form = form_read(choice, payload);
  if (form.empty()) return;
  require(form_read(choice, form + "behind") == form, "a form is read as it was written");
  const std::size_t step = 1 + form.size() / 64;
  for (std::size_t size = form.size() % step; size < form.size(); size += step) {
    require(form_read(choice, form.substr(0, size)).empty(), "a form that is cut isn't read");
  }
}

}  // namespace

// The first byte of the input chooses the class; without its top bit the input begins behind the
// type string.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = text_of(data, size);
  const std::uint8_t choice = take_byte(input);
  const bool whole = (choice & 0x80) != 0;
  check_form(choice, (whole ? "" : wide_bytes(make(choice)->name().text())).append(input));
  return 0;
}
