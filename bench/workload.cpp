#include "bench/workload.h"

#include <algorithm>
#include <array>
#include <random>
#include <string_view>

#include "json/writer.h"
#include "tools/request_cutter.h"

namespace {

// The size of a set in bytes, and the most texts in it.
constexpr std::size_t set_size = 400'000;
constexpr std::size_t most_texts = 256;

using generator = std::minstd_rand;

std::size_t below(generator& random, std::size_t end) { return random() % end; }

template <std::size_t Count>
std::string pick(generator& random, const std::array<std::string_view, Count>& from) {
  return std::string(from[below(random, Count)]);
}

std::string word(generator& random, std::size_t least, std::size_t most) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456789_-";
  std::string text;
  for (std::size_t left = least + below(random, most - least + 1); left > 0; --left) {
    text += letters[below(random, letters.size())];
  }
  return text;
}

std::string address(generator& random) {
  constexpr std::array<std::string_view, 4> hosts = {"www.example.com", "login.example.org",
                                                     "accounts.example.co.uk",
                                                     "intranet.corp.example:8443"};
  std::string text = "https://" + pick(random, hosts) + "/users/sign_in";
  for (std::size_t left = below(random, 4); left > 0; --left) {
    text += left == 3 ? '?' : '&';
    text.append(word(random, 2, 8)).append(1, '=').append(word(random, 4, 24));
  }
  return text;
}

// A value that a user has typed or a page has set.
std::string value(generator& random, page_flavour flavour) {
  if (flavour == page_flavour::escaped) {
    return R"(C:\\dir\\)" + word(random, 2, 6) + R"(\n\")" + word(random, 2, 6) +
           R"(\"\t\u00e9\u00fc\u20ac)";
  }
  constexpr std::array<std::string_view, 12> values = {"",
                                                       "",
                                                       "",
                                                       "",
                                                       "me@example.com",
                                                       "John",
                                                       "12 Example Road",
                                                       "2026-01-31",
                                                       "on",
                                                       "M\xC3\xBCller",
                                                       R"(a \"quoted\" value)",
                                                       R"(line one\nline two)"};
  return pick(random, values);
}

void put(std::string& text, std::string_view key, std::string_view escaped_value) {
  if (text.back() != '{') text += ',';
  text.append(1, '"').append(key).append("\":\"").append(escaped_value).append(1, '"');
}

std::string make_input(generator& random, int number, page_flavour flavour) {
  constexpr std::array<std::string_view, 8> names = {
      "email",          "username",    "password",  "first_name",
      "street-address", "postal_code", "cc-number", "otp"};
  constexpr std::array<std::string_view, 5> types = {"text", "password", "email", "tel",
                                                     "checkbox"};
  constexpr std::array<std::string_view, 5> contexts = {"", "login", "signup", "shipping",
                                                        "payment"};
  constexpr std::array<std::string_view, 6> schemas = {"", "", "", "user", "pass", "address.zip"};
  std::string text = "{";
  put(text, "name", pick(random, names) + '_' + std::to_string(number));
  put(text, "value", value(random, flavour));
  put(text, "type", pick(random, types));
  put(text, "id", "form-" + word(random, 3, 14));
  put(text, "readonly", below(random, 4) == 0 ? "1" : "");
  put(text, "context", pick(random, contexts));
  put(text, "form_context",
      "form[" + std::to_string(number / 8) + "]#" + word(random, 4, 12) + " > div:nth-child(2)");
  put(text, "dbSchema", pick(random, schemas));
  text += below(random, 3) == 0 ? R"(,"dbvalue":null)" : R"(,"dbvalue":"")";
  return text + '}';
}

std::string make_request(generator& random, int inputs, page_flavour flavour) {
  constexpr std::array<std::string_view, 6> titles = {
      "Sign in",
      "Log in to your account | Example Bank",
      "Checkout - step 2 of 4",
      "Se connecter \xC2\xB7 Cr\xC3\xA9"
      "dit",
      "\xE7\x99\xBB\xE5\xBD\x95 - \xE9\x93\xB6\xE8\xA1\x8C",
      R"(Project \"Blue\")"};
  std::string data = "{";
  put(data, "sender", "tab-" + std::to_string(below(random, 400)));
  put(data, "source", address(random));
  put(data, "title", pick(random, titles));
  put(data, "user_state", "load");
  put(data, "document_state", "complete");
  put(data, "context", "login");
  put(data, "before_url", address(random));
  put(data, "source_event", "DOMContentLoaded");
  put(data, "source_context", "main-frame");
  data += R"(,"after_url":null,"fHasMultipleForms":1,"fIsPartiallyFilled":0,"inputs":[)";
  for (int i = 0; i < inputs; ++i) {
    if (i > 0) data += ',';
    data += make_input(random, i, flavour);
  }
  return R"({"method":"get-info-for-page","data":)" + data + "]}}";
}

template <class Make>
std::vector<std::string> make_set(Make make) {
  generator random(2026);
  std::vector<std::string> texts = {make(random)};
  const std::size_t count = std::clamp<std::size_t>(set_size / texts[0].size(), 1, most_texts);
  while (texts.size() < count) texts.push_back(make(random));
  return texts;
}

}  // namespace

std::vector<std::string> make_requests(int inputs, page_flavour flavour) {
  return make_set([=](generator& random) { return make_request(random, inputs, flavour); });
}

std::string frames_of(const std::vector<std::string>& requests) {
  std::string frames, envelope;
  for (const std::string& request : requests) {
    request_cutter cutter(request, "r7Kq", max_request_envelope);
    while (cutter.next(envelope)) frames += make_frame(envelope);
  }
  return frames;
}

std::vector<std::string> make_envelopes(std::size_t size) {
  const std::string start = R"({"id":"r7Kq","fragment":"final","msg":")";
  const std::size_t room = size > start.size() + 2 ? size - start.size() - 2 : 0;
  return make_set([&](generator& random) {
    std::string piece;
    while (piece.size() < room) piece += word(random, 8, 8);
    return start + piece.substr(0, room) + "\"}";
  });
}

std::vector<std::string> make_texts(script letters, std::size_t size) {
  return make_set([=](generator& random) {
    std::string text;
    while (text.size() < size) {
      text += word(random, 1, 1);
      if (letters == script::latin && below(random, 4) == 0) text += "\xC3\xA9";
      if (letters == script::chinese) {
        text.back() = '\xE7';
        text += static_cast<char>(0x80 + below(random, 64));
        text += static_cast<char>(0x80 + below(random, 64));
      }
    }
    return text;
  });
}

std::vector<std::string> make_binaries(std::size_t size) {
  return make_set([=](generator& random) {
    std::string bytes(size, '\0');
    // Without zeros, where a decoder might stop.
    for (char& byte : bytes) byte = static_cast<char>(1 + below(random, 255));
    return bytes;
  });
}
