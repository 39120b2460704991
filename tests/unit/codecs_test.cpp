#include <algorithm>

#include "tests/unit/support.h"
#include "transport/codecs/base64.h"
#include "transport/codecs/text.h"
#include "transport/random_id.h"

namespace {

std::string encoded(const std::string& bytes, int width = base64_vector_width) {
  auto length = base64_encoded_length(static_cast<std::int32_t>(bytes.size()));
  const std::unique_ptr<char[]> out(new char[static_cast<std::size_t>(length)]);
  EXPECT_EQ(base64_encode(bytes.data(), static_cast<std::int32_t>(bytes.size()), out.get(), &length,
                          width),
            0);
  return {out.get(), static_cast<std::size_t>(length)};
}

TEST(Base64, EncodesTheVectorsOfTheStandard) {
  check([](const std::string& bytes) { return encoded(bytes); },
        R"(=> ;; f => Zg== ;; fo => Zm8= ;; foo => Zm9v ;; foob => Zm9vYg==
    fooba => Zm9vYmE= ;; foobar => Zm9vYmFy)");
  EXPECT_EQ(base64_encoded_length(max_base64_input), 715'827'884);
}

TEST(Base64, GivesTheSameWithVectorsOfEachWidth) {
  for (std::string bytes; bytes.size() < 200; bytes += static_cast<char>(bytes.size() * 37)) {
    const std::string text = encoded(bytes, 0);
    std::string broken = text;
    broken.insert(broken.size() / 3, "\n");
    for (int width = 0; width <= base64_vector_width; width += 16) {
      EXPECT_EQ(encoded(bytes, width), text) << width;
      std::string out(bytes.size(), '!');
      auto length = static_cast<std::int32_t>(out.size());
      base64_decode(broken.data(), out.data(), &length, broken.data() + broken.size(), width);
      EXPECT_EQ(out, bytes) << width;
    }
  }
}

TEST(Base64, RefusesWhatItHasNoRoomFor) {
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

TEST(Text, RefusesOnlyANullPointer) {
  wide_string wide = u"kept";
  std::string narrow = "kept";
  for (const std::uint32_t length : {0U, 5U}) {
    EXPECT_FALSE(utf8_to_wide(wide, nullptr, length) || wide_to_utf8(narrow, nullptr, length));
  }
  EXPECT_EQ(shown(wide) + narrow, "keptkept");
}

}  // namespace
