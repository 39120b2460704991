#include <algorithm>

#include "tests/unit/support.h"
#include "transport/base64.h"
#include "transport/base64_vector.h"
#include "transport/random_id.h"
#include "transport/text.h"

namespace {

std::string encoded(const std::string& bytes) {
  auto length = base64_encoded_length(static_cast<std::int32_t>(bytes.size()));
  const std::unique_ptr<char[]> out(new char[static_cast<std::size_t>(length)]);
  EXPECT_EQ(
      base64_encode(bytes.data(), static_cast<std::int32_t>(bytes.size()), out.get(), &length), 0);
  return {out.get(), static_cast<std::size_t>(length)};
}

// What arrives in exactly `capacity` bytes, and behind it the count if the result is a failure.
std::string decoded(const std::string& text, std::int32_t capacity = 900) {
  const std::unique_ptr<char[]> out(new char[static_cast<std::size_t>(capacity)]());
  std::int32_t count = capacity;
  const int result = base64_decode(text.data(), out.get(), &count, text.data() + text.size());
  const std::string bytes(out.get(), static_cast<std::size_t>(std::min(count, capacity)));
  return result == 0 ? bytes : bytes + "!" + std::to_string(count);
}

TEST(Base64, CodesTheVectorsOfTheStandardAndEveryLength) {
  check(encoded, R"(=> ;; f => Zg== ;; fo => Zm8= ;; foo => Zm9v ;; foob => Zm9vYg==
    fooba => Zm9vYmE= ;; foobar => Zm9vYmFy)");
  std::string all;
  const int best = base64_vector_width;
  for (int i = 0; i < 600; ++i, all += static_cast<char>(i * 7)) {
    base64_vector_width = 0;
    const std::string plainly = encoded(all);
    EXPECT_EQ(plainly.size(), static_cast<std::size_t>((i + 2) / 3 * 4));
    for (const int width : {0, 16, 32}) {
      base64_vector_width = std::min(width, best);
      EXPECT_EQ(encoded(all), plainly);
      EXPECT_EQ(decoded(plainly, i), all);
    }
  }
  base64_vector_width = best;
  EXPECT_EQ(base64_encoded_length(max_base64_input), 715'827'884);
}

TEST(Base64, DecodesLeniently) {
  check([](const std::string& text) { return shown(decoded(text)); }, R"(
    Zg => f ;; Zg= => f ;; Z => ;; Zm8 => fo ;; Zm9vY => foo ;; ==== => ;; <20>Z<0D><0A>g = = => f
    Zm9v<0A>YmFy => foobar ;; QQ==QQ== => A<04><10> ;; Z-m_9*v => foo ;; QUJD<00>QUJD => ABC
    QU<00>JD => ABC ;; <00>QUJD => ;; <80>Q<FF>Q => A)");
  const std::string plain = "How vexingly quick daft zebras jump over it all";
  for (int foreign = 1; foreign < 256; ++foreign) {
    if (std::isalnum(foreign) != 0 || foreign == '+' || foreign == '/') continue;
    for (std::size_t at = 0; at < 40; ++at) {
      EXPECT_EQ(decoded(encoded(plain).insert(at, 1, static_cast<char>(foreign))), plain);
    }
  }
}

TEST(Base64, KeepsToTheRoomThatThereIs) {
  EXPECT_EQ(shown(decoded("QUJDREVG", 5)), "ABC<00><00>!6");
  EXPECT_EQ(decoded("QUJDREVG", 6), "ABCDEF");
  std::int32_t count = 9, little = 3;
  char text[] = "QUJDRA==";
  EXPECT_EQ(base64_decode(text, nullptr, &count, text + 8), -1);
  EXPECT_EQ(count, 4);
  EXPECT_EQ(base64_encode("abc", 3, text, &little), -1);
  EXPECT_EQ(base64_encode("abc", 3, nullptr, &count), -1);
  EXPECT_EQ(base64_encode("abc", 3, text, nullptr) + base64_decode(text, text, nullptr, text), -2);
  for (const std::int32_t size : {-1, INT32_MIN, max_base64_input + 1, INT32_MAX}) {
    std::int32_t room = INT32_MAX;
    EXPECT_EQ(base64_encode("abc", size, text, &room), -1) << size;
  }
  EXPECT_STREQ(text, "QUJDRA==");
}

TEST(RandomId, TakesEachLetterAndDigitAndNothingElse) {
  std::string all;
  for (std::size_t i = 0; i < 100; ++i)
    random_id((all += std::string(random_id_length, '!')).data() + random_id_length * i);
  std::sort(all.begin(), all.end());
  all.erase(std::unique(all.begin(), all.end()), all.end());
  EXPECT_EQ(all, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
}

std::string narrowed(const wide_string& text) {
  std::string out = "before";
  EXPECT_TRUE(wide_to_utf8(out, text));
  return out;
}

wide_string widened(const std::string& text) {
  wide_string out = u"before";
  EXPECT_TRUE(utf8_to_wide(out, text.data(), static_cast<std::uint32_t>(text.size())));
  return out;
}

// The units and, where it differs from the input, what comes of them.
std::string both_ways(const std::string& text) {
  const wide_string wide = widened(text);
  return shown(wide) + (narrowed(wide) == text ? "" : " " + shown(narrowed(wide)));
}

TEST(Text, IsConvertedExactlyWhereItIsWellFormed) {
  check(both_ways, R"(
    => ;; plain => plain ;; <7F><C2><80><DF><BF> => <7F><80><7FF> ;; <E0><A0><80> => <800>
    <ED><9F><BF><EE><80><80><EF><BF><BF> => <D7FF><E000><FFFF> ;; a<C3><A9>z => a<E9>z
    <F0><90><80><80><F4><8F><BF><BF>z => <D800><DC00><DBFF><DFFF>z
    <ED><A0><BD><ED><B8><80> => <D83D><DE00> <F0><9F><98><80>
    <ED><BF><BF><ED><A0><80>a => <DFFF><D800>a <EF><BF><BD><EF><BF><BD>a
    a<00>b => a a)");
  EXPECT_EQ(widened(std::string(2, 0)), u"");
  EXPECT_EQ(shown(narrowed({0xD83D, 0xD83D, 0xDE00, 'a', 0, 'b'})),
            "<EF><BF><BD><F0><9F><98><80>a");
}

TEST(Text, RefusesOnlyANullPointer) {
  wide_string wide = u"kept";
  std::string narrow = "kept";
  for (const std::uint32_t length : {0U, 5U}) {
    EXPECT_FALSE(utf8_to_wide(wide, nullptr, length) || wide_to_utf8(narrow, nullptr, length));
  }
  EXPECT_EQ(shown(wide) + narrow, "keptkept");
}

TEST(Text, IsConvertedWhateverLiesWhereInARunOfAscii) {
  for (const std::size_t length : {1U, 7U, 8U, 9U, 17U, 33U, 170U, 171U, 511U, 512U, 513U}) {
    for (std::size_t at = 0; at < std::min<std::size_t>(length, 36); ++at) {
      const std::string before(at, 'x'), after(length - at, 'y');
      const wide_string wide = wide_string(at, 'x') + u'\u20AC' + wide_string(length - at, 'y');
      EXPECT_EQ(widened(before + "\xE2\x82\xAC" + after), wide) << length << ", " << at;
      EXPECT_EQ(narrowed(wide), before + "\xE2\x82\xAC" + after) << length << ", " << at;
    }
  }
}

}  // namespace
