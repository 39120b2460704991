#include <filesystem>
#include <fstream>

#include "platform/linux/profile.h"
#include "platform/platform.h"
#include "tests/unit/table.h"

namespace {

TEST(Profile, GivesTheFirstValueOfTheKey) {
  const auto value = [](const std::string& text) {
    return std::string(find_profile_value(text, "s", "k").value_or("none"));
  };
  check(value, R"(
    [s]<0A>k=1<0A> => 1 ;; [S]<0D><0A>K = 1 <0D><0A> => 1 ;; <EF><BB><BF>[s]<0A>k=1 => 1
    <20>[ s ] x<0A><09> k<09>=<09>1 2<09> => 1 2 ;; [s]<0A>k="1" => 1 ;; [s]<0A>k='1' => 1
    [s]<0A>k="1' => "1' ;; [s]<0A>k=" => " ;; [s]<0A>;k=0<0A> ; k=0<0A>k=1,2 => 1,2
    [s]<0A>k=1<0A>k=2<0A>[s]<0A>k=3 => 1 ;; [s]<0A>k=a=b => a=b ;; [s]<0A>k= =>
    k=0<0A>[t]<0A>k=0<0A>[s]<0A>kk=0<0A>nonsense<0A>k=1 => 1 ;; => none ;; [s]<0A>k => none
    [t]<0A>k=1 => none ;; [s]<0A>[t]<0A>k=1 => none ;; [ => none)");
}

TEST(Text, HasEachMaximalSubpartReplaced) {
  const auto widened = [](const std::string& text) {
    wide_string wide(text.size(), 0);
    const auto length = static_cast<std::uint32_t>(text.size());
    wide.resize(platform::utf8_to_utf16(text.data(), length, wide.data()));
    return shown(wide);
  };
  check(widened, R"(
    <C0><AF><E0><80><BF><F0><81><82>A => <FFFD><FFFD><FFFD><FFFD><FFFD><FFFD><FFFD><FFFD>A
    <F4><91><92><93><FF>A<80><BF>B => <FFFD><FFFD><FFFD><FFFD><FFFD>A<FFFD><FFFD>B
    <E1><80><E2><F0><91><92><F1><BF>A => <FFFD><FFFD><FFFD><FFFD>A ;; <C3> => <FFFD>
    <E2><82> => <FFFD> ;; <F0><9F><98> => <FFFD> ;; <F5><80> => <FFFD><FFFD> ;; <E2>A => <FFFD>A
    <C1><BF> => <FFFD><FFFD> ;; <ED><A0> => <FFFD><FFFD> ;; <ED><AF>A => <FFFD><FFFD>A)");
}

TEST(Configuration, IsReadFromASmallTextFileAndNothingElse) {
  const std::filesystem::path file = std::filesystem::path(CFHOST_SYSCONFDIR) / "Folder/file.ini";
  const auto configured = [] {
    wide_string out(9, u'#');
    out.resize(platform::config_value({u"Folder", u"file.ini", u"s", u"k"}, out.data(), 9));
    return out;
  };
  std::filesystem::remove_all(file.parent_path());
  EXPECT_EQ(configured(), u"") << "no folder";
  std::filesystem::create_directories(file);
  EXPECT_EQ(configured(), u"") << "a folder in its place";
  std::filesystem::remove(file);
  const auto written = [&](const std::string& text) {
    std::ofstream(file) << text;
    return shown(configured());
  };
  check(written, R"([S]<0A>K= <E2><82><AC> 1 <0A> => <20AC> 1 ;; [s]<0A>k=12345678 => 12345678
    [s]<0A>k=123456789 => 12345678 ;; [s]<0A>k=1<0A><00> =>)");
  EXPECT_EQ(written("[s]\nk=1\n" + std::string(70'000, ';')), "");
}

}  // namespace
