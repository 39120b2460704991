// What every implementation of the platform layer must do.
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

wide_string widened(const std::string& text) {
  wide_string wide(text.size(), 0);
  const auto length = static_cast<std::uint32_t>(text.size());
  wide.resize(platform::utf8_to_utf16(text.data(), length, wide.data()));
  return wide;
}

std::string narrowed(const wide_string& wide) {
  std::string narrow(3 * wide.size(), 0);
  const auto units = static_cast<std::uint32_t>(wide.size());
  narrow.resize(platform::utf16_to_utf8(wide.data(), units, narrow.data()));
  return narrow;
}

TEST(Text, IsConvertedExactlyWhereItIsWellFormed) {
  const auto both_ways = [](const std::string& text) {
    return shown(widened(text)) + (narrowed(widened(text)) == text ? "" : " one way");
  };
  check(both_ways, R"(
    plain => plain ;; <7F><C2><80><DF><BF> => <7F><80><7FF> ;; <E0><A0><80> => <800>
    <ED><9F><BF><EE><80><80><EF><BF><BF> => <D7FF><E000><FFFF> ;; a<C3><A9>z => a<E9>z
    <F0><90><80><80><F4><8F><BF><BF>z => <D800><DC00><DBFF><DFFF>z
    <ED><BF><BF><ED><A0><80>a => <DFFF><D800>a one way)");
}

// Whatever surrounds it, a surrogate coded in three bytes becomes that code unit.
TEST(Text, IsNeverRefusedAndKeepsCodedSurrogates) {
  for (const std::string part : {"", "\xFF", "\xC3", "\xE2\x82", "\xF0\x9F", "\xBF\xBF", "a"}) {
    const wide_string wide = widened(part + "\xED\xA0\xBD\xED\xB8\x80" + part);
    EXPECT_NE(wide.find(u"\xD83D\xDE00"), wide.npos) << shown(part);
    EXPECT_NE(narrowed(wide).find("\xF0\x9F\x98\x80"), std::string::npos) << shown(part);
  }
  EXPECT_EQ(narrowed(u"\xD83D"), "\xEF\xBF\xBD");
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
