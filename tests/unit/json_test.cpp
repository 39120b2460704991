#include <bit>
#include <chrono>
#include <cmath>
#include <cstring>

#include "json/parser.h"
#include "json/writer.h"
#include "tests/unit/support.h"

namespace {

TEST(Parser, ComputesFloatsInSinglePrecisionStepByStep) {
  const auto start = std::chrono::steady_clock::now();
  const auto number = [](const std::string& text) {
    std::string source = "[" + text + "]";
    const json_document parsed(source.data());
    const float value = parsed.root()->first_child->value.number;
    char bits[16];
    std::snprintf(bits, sizeof bits, "f%08X", std::bit_cast<std::uint32_t>(value));
    return std::isnan(value) ? std::string("nan") : bits;
  };
  check(number, R"(
    0.1 => f3DCCCCCD ;; 1.1 => f3F8CCCCD ;; 3.14159 => f40490FCE ;; 123456.789 => f47F12065
    0.26 => f3E851EB8 ;; 1.923 => f3FF624DE
    -.5 => fBF000000 ;; 1. => f3F800000 ;; -0.0 => f80000000
    16777217.0 => f4B800000 ;; 9.999999e9 => f501502F7 ;; 5e-8 => f3356BF95 ;; 7E+2 => f442F0000
    1.17549435e-38 => f00800000 ;; 1e-38 => f006CE3EE ;; 1e => f3F800000 ;; 1e+ => f3F800000
    1e- => f3F800000 ;; 1e0 => f3F800000 ;; 1e38 => f7E96769A ;; 1e39 => f7F800000
    -1e39 => fFF800000 ;; 1e-39 => f00000000 ;; 0e39 => nan ;; 1e4294967296 => f3F800000
    1e2147483648 => f41200000 ;; 1e2147483647 => f7F800000 ;; 1e-2147483646 => f00000000)");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << "huge exponents";
}

TEST(Parser, BoundsTheMemoryOfNodes) {
  std::string element = "{";
  for (char key = 'a'; key < 'j'; ++key) element += '"' + std::string(1, key) + "\":\"v\",";
  element += '}';
  std::string page = "[";
  for (int i = 0; i < 65536; ++i) page += element;
  for (const auto& [text, expected] :
       {std::pair(page + ']', ""), {std::string(2'000'000, '['), "Too many values"}}) {
    std::string copy = text;
    const char *position = nullptr, *description = "";
    scoped_node_arena arena;
    EXPECT_EQ(json_parse(copy.data(), position, description, arena) == nullptr, *expected != 0);
    EXPECT_STREQ(description, expected);
    arena_release(arena);
    EXPECT_NE(arena_alloc(arena), nullptr) << "The bound is each parse's own.";
  }
}

TEST(Parser, RewritesTheTextOnlyInsideStrings) {
  std::string text = R"({"k":"a\tb","n":[1,2.5,null]})";
  EXPECT_NE(json_document(text.data()).root(), nullptr);
  EXPECT_EQ(shown(text), R"({"k<00>:"a<09>b<00>","n<00>:[1,2.5,null]})");
}

TEST(Writer, EscapesOnlyWhatItMust) {
  check([](const std::string& text) { return shown(json_quote(text)); }, R"(
    => "" ;; a/b/c => "a/b/c" ;; a/b/c"d => "a\/b\/c\"d" ;; a/b<09> => "a\/b\t" ;; \ => "\\"
    <08><0A><0C><0D> => "\b\n\f\r" ;; <01><07><0B><0E><1F> => "\u0001\u0007\u000B\u000E\u001F"
    <7F><C3><A9> => "<7F><C3><A9>" ;; <7F><C3><A9><0A> => "<7F><C3><A9>\n" ;; a<00>/ => "a<00>/")");
  for (std::size_t size = 427; size <= 1024; ++size) {
    EXPECT_EQ(json_quote(std::string(size, '\1')).size(), 6 * size + 2) << "room for escapes";
  }
}

TEST(Writer, WritesTheMembersOfAContainer) {
  pair_stream s, sub, outer;
  EXPECT_EQ(json_close_object(s) + json_close_array(s), "{}[]");
  json_put_string(json_put_string(s, "site", "a/b"), "note", "say \"hi\"/bye");
  json_put_null(json_put_int(s, "n", -7), "gone");
  json_put_object(s, "sub", json_put_string(sub, "k", "v"));
  json_put_array(s, "list", pair_stream());
  const std::string closed =
      R"({"site":"a/b","note":"say \"hi\"\/bye","n":-7,"gone":null,"sub":{"k":"v"},"list":[]})";
  EXPECT_EQ(json_close_object(s), closed);
  json_put_int(json_put_object(outer, "", s), "", INT32_MIN);
  json_put_wide(json_put_wide(outer, "w", u"\u00E9\xD83D"), "e", u"");
  EXPECT_EQ(shown(json_close_array(outer)),
            "[\"\":" + closed + R"(,"":-2147483648,"w":"<C3><A9><EF><BF><BD>","e":""])");
}

}  // namespace
