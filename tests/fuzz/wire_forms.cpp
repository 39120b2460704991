// Compares the binary forms with a second implementation.

#include <cstring>
#include <map>
#include <vector>

#include "messages/commands.h"
#include "messages/library/received_object.h"
#include "messages/website.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/support/payload.h"

namespace {

// The fields of a form: its type, texts, words, guards (the last one counts), a bag and a list.
struct form_kind {
  owned_message (*make)();
  std::string_view fields;
};

template <class Message>
owned_message make() {
  return make_owned<Message>();
}

const form_kind forms[] = {
    {make<CfMsgWebsite>, "twssgbglgwww"},
    {make<CfMsgOpenUrl>, "tss"},
    {[]() -> owned_message { return make_owned<CfMsgRunConsole>(console_open); }, "twwss"},
    {make<CfMsgCfDbCmd>, "twwsssww"},
    {make<CfMsgUnLockDb>, "twsswwww"},
};

// Reads a form field by field, and returns it as it is written again; or nothing.
struct second_reading {
  std::string left;
  bool ok = true;

  std::string take(std::size_t size) {
    ok = ok && size <= left.size();
    if (!ok) return {};
    std::string taken = left.substr(0, size);
    left.erase(0, size);
    return taken;
  }

  // With its terminator.
  std::string take_text() {
    std::string text;
    do text += take(2);
    while (ok && !text.ends_with(std::string(2, '\0')));
    return text;
  }

  std::string take_bag() {
    const std::string end = wide_bytes(u"");
    std::map<wide_string, std::string> pairs;  // in the order of code units
    for (std::string key; ok && (key = take_text()) != end;) {
      wide_string units(key.size() / 2, 0);
      std::memcpy(units.data(), key.data(), key.size());
      pairs[units] = key + take_text();
    }
    std::string bag;
    for (const auto& [key, pair] : pairs) bag += pair;
    return bag + end;
  }

  std::string take_bags() {
    const std::string size = take(4);
    std::int32_t count = 0;
    size.copy(reinterpret_cast<char*>(&count), sizeof count);
    std::string bags = count > 0 ? size : word(0);
    for (; ok && count > 0; --count) bags += take_bag();
    return bags;
  }

  std::string form(std::string_view fields, const std::string& type) {
    std::string whole, guard;
    std::vector<std::size_t> guards;
    for (const char field : fields) {
      if (field == 't') ok = take_text() == type, whole += type;
      if (field == 'w') whole += take(4);
      if (field == 's') whole += take_text();
      if (field == 'g') guards.push_back(whole.size()), whole += guard = take(4);
      if (field == 'b') whole += take_bag();
      if (field == 'l') whole += take_bags();
    }
    if (!ok) return {};
    for (const std::size_t at : guards) whole.replace(at, guard.size(), guard);
    return whole;
  }
};

// What could be read, as a form; or nothing.
std::string form_read(const form_kind& kind, std::string_view payload) {
  const auto message = kind.make();
  odd_stream stream(payload);
  memory_sink sink;
  if (!message->read(stream)) return {};
  require(message->write(sink.stream), "what could be read can be written");
  return sink.bytes;
}

}  // namespace

// The first byte of the input chooses the class. Without its top bit the input starts after the
// type string.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input = text_of(data, size);
  const std::uint8_t choice = take_byte(input);
  const form_kind& kind = forms[choice % std::size(forms)];
  const std::string type = wide_bytes(kind.make()->name().text());
  std::string payload = choice >= 0x80 ? "" : type;
  payload += input;
  require(form_read(kind, payload) == second_reading{payload}.form(kind.fields, type),
          "a form is read and written, if it is whole");
  return 0;
}
