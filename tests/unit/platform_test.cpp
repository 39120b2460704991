// What every implementation of the platform layer has to do.
#include "platform/platform.h"

#include <thread>
#include <vector>

#include "tests/unit/table.h"

namespace {

TEST(LeadingInteger, SaturatesAndStopsAtTheFirstForeignCharacter) {
  const auto integer = [](const std::string& text) {
    return std::to_string(platform::leading_integer(wide_string(text.begin(), text.end()).c_str()));
  };
  check(integer, R"(=> 0 ;; x => 0 ;; 12x => 12 ;; <20><09><0A>-7 => -7 ;; +7 => 7 ;; --7 => 0
    2147483648 => 2147483647 ;; -2147483649 => -2147483648 ;; 99999999999999999999 => 2147483647)");
}

// Whatever is around it, a surrogate that is coded in three bytes becomes that unit.
TEST(Text, IsNeverRefusedAndKeepsCodedSurrogates) {
  for (const std::string part : {"", "\xFF", "\xC3", "\xE2\x82", "\xF0\x9F", "\xBF\xBF", "a"}) {
    const std::string text = part + "\xED\xA0\xBD\xED\xB8\x80" + part;
    wide_string wide(text.size(), 0);
    const auto length = static_cast<std::uint32_t>(text.size());
    wide.resize(platform::utf8_to_utf16(text.data(), length, wide.data()));
    EXPECT_NE(wide.find(u"\xD83D\xDE00"), wide.npos) << shown(part);

    std::string narrow(3 * wide.size(), 0);
    const auto units = static_cast<std::uint32_t>(wide.size());
    narrow.resize(platform::utf16_to_utf8(wide.data(), units, narrow.data()));
    EXPECT_NE(narrow.find("\xF0\x9F\x98\x80"), narrow.npos) << shown(part);
  }
  char replaced[3] = {};
  EXPECT_EQ(platform::utf16_to_utf8(u"\xD83D", 1, replaced), 3U);
  EXPECT_EQ(std::string(replaced, 3), "\xEF\xBF\xBD");
}

TEST(RandomNumbers, AreOfOneSequenceForAllThreads) {
  const auto draw = [](std::vector<int>& numbers) {
    for (int& number : numbers) number = platform::random_number();
  };
  std::vector<int> here(64), there(64);
  std::thread other(draw, std::ref(there));
  draw(here);
  other.join();
  EXPECT_NE(here, there);
}

TEST(Modules, AreLoadedFromWhereTheyAreSaidToBeAndNowhereElse) {
  const wide_string path = platform::library_path_beside(platform::own_module(), u"no-such");
  EXPECT_NE(path.find(u"no-such."), path.npos);
  for (const wide_string& name : {path, wide_string(u"kernel32.dll"), wide_string(u"libc.so.6"),
                                  wide_string(u""), wide_string(u"C:kernel32.dll")}) {
    EXPECT_EQ(platform::load_library(name), nullptr) << shown(name);
  }
}

}  // namespace
