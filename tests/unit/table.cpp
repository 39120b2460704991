#include "tests/unit/table.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
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

void check(const std::function<std::string(const std::string&)>& actual, std::string_view table,
           const char* file, int line) {
  static const std::regex one(R"(\s*(.*?) *=> *(.*?) *(?:\n|;;|$))");
  const char* const end = table.data() + table.size();
  for (std::cregex_iterator at(table.data(), end, one), none; at != none; ++at) {
    const std::string input = (*at)[1], expected = (*at)[2], found = actual(input_bytes(input));
    if (found == expected) continue;
    const auto row = line + std::count(table.data(), (*at)[2].first, '\n');
    ADD_FAILURE_AT(file, static_cast<int>(row))
        << "for " << input << "\nexpected " << expected << "\ngot      " << found;
  }
}

void check_file(const std::function<std::string(const std::string&)>& actual,
                const std::string& path) {
  std::ifstream file(path);
  const std::string table(std::istreambuf_iterator<char>(file), {});
  EXPECT_FALSE(table.empty()) << path;
  check(actual, table, path.c_str(), 1);
}

std::string shown(std::string_view bytes) { return all_shown(bytes); }
std::string shown(wide_view units) { return all_shown(units); }
