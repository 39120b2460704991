// The other direction, built the same way: the agent's payload in, frames out.
// Usage: outbound_host PAYLOAD-FILE COUNT

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "bench/peers/good_base64.h"

namespace {

using bag = std::map<std::u16string, std::u16string>;
using writer = rapidjson::Writer<rapidjson::StringBuffer, rapidjson::UTF16<char16_t>>;

constexpr std::size_t piece_size = 424;

class payload_reader {
 public:
  explicit payload_reader(const std::string& bytes) : at_(bytes.data()) {}

  std::u16string text() {
    std::u16string result;
    for (char16_t unit = 0; std::memcpy(&unit, at_, sizeof unit), at_ += sizeof unit, unit != 0;) {
      result += unit;
    }
    return result;
  }
  std::uint32_t number() {
    std::uint32_t result = 0;
    std::memcpy(&result, at_, sizeof result);
    at_ += sizeof result;
    return result;
  }
  bag pairs() {
    bag result;
    for (std::u16string key = text(); !key.empty(); key = text()) result[key] = text();
    return result;
  }

 private:
  const char* at_;
};

void put(writer& out, std::u16string_view text) {
  out.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

// The name of an input's property in a notification.
std::u16string_view member_name(std::u16string_view name) {
  if (name == u"form-context") return u"form_context";
  if (name == u"cf-schema") return u"dbSchema";
  return name == u"cf-value" ? u"dbvalue" : name;
}

std::string notification_of(const std::string& payload) {
  payload_reader in(payload);
  rapidjson::StringBuffer buffer;
  writer out(buffer);
  in.text();
  in.number();
  out.StartObject();
  put(out, u"coffer_info_update");
  out.StartObject();
  put(out, u"sender");
  put(out, in.text());
  in.text();
  in.number();
  for (const auto& [key, value] : in.pairs()) put(out, key), put(out, value);
  in.number();
  put(out, u"inputs");
  out.StartArray();
  for (std::uint32_t left = in.number(); left > 0; --left) {
    out.StartObject();
    for (const auto& [key, value] : in.pairs()) put(out, member_name(key)), put(out, value);
    out.EndObject();
  }
  out.EndArray();
  put(out, u"dbItems");
  out.StartArray();
  out.EndArray();
  out.EndObject();
  out.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

void write_frame(const std::string& envelope) {
  const auto length = static_cast<std::uint32_t>(envelope.size());
  std::fwrite(&length, sizeof length, 1, stdout);
  std::fwrite(envelope.data(), 1, envelope.size(), stdout);
  std::fflush(stdout);
}

void send(const std::string& text, int number) {
  std::string base64;
  table_base64_encode(text.data(), text.size(), base64);
  char id[33];
  std::snprintf(id, sizeof id, "%032d", number);
  int fragment = 0;
  for (std::size_t at = 0; at < base64.size(); at += piece_size, ++fragment) {
    const bool is_last = at + piece_size >= base64.size();
    write_frame(R"({"reply":"success","id":")" + std::string(id) + R"(","fragment":)" +
                (is_last ? "\"final\"" : std::to_string(fragment)) + R"(,"data":")" +
                base64.substr(at, piece_size) + "\"}");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  std::ifstream file(argv[1], std::ios::binary);
  const std::string payload(std::istreambuf_iterator<char>(file), {});
  if (payload.empty()) return 1;
  for (int left = std::atoi(argv[2]); left > 0; --left) send(notification_of(payload), left);
}
