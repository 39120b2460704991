#include "tests/unit/table.h"

#include <cstdio>
#include <regex>

namespace {

std::string input_bytes(const std::string& text) {
  static const std::regex coded("<([0-9A-F]{2})>|([^])");
  std::string bytes;
  for (std::sregex_iterator at(text.begin(), text.end(), coded), end; at != end; ++at) {
    const std::string digits = (*at)[1];
    bytes += digits.empty() ? *(*at)[2].first : static_cast<char>(std::stoi(digits, nullptr, 16));
  }
  return bytes;
}

template <class Text>
std::string all_shown(const Text& text) {
  std::string out;
  char coded[16];
  for (const auto element : text) {
    const unsigned code = static_cast<std::make_unsigned_t<decltype(element)>>(element);
    std::snprintf(coded, sizeof coded, code >= 32 && code < 127 ? "%c" : "<%02X>", code);
    out += coded;
  }
  return out;
}

}  // namespace

void check(const std::function<std::string(const std::string&)>& actual, const std::string& table) {
  static const std::regex one(R"(\s*(.*?) *=> *(.*?) *(?:\n|;;|$))");
  for (std::sregex_iterator at(table.begin(), table.end(), one), end; at != end; ++at) {
    EXPECT_EQ(actual(input_bytes((*at)[1])), (*at)[2]) << "for " << (*at)[1];
  }
}

std::string shown(std::string_view bytes) { return all_shown(bytes); }
std::string shown(wide_view units) { return all_shown(units); }
