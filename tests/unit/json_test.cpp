#include <bit>
#include <chrono>
#include <cmath>

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
  check_file(number, TABLES "/floats.txt");
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

TEST(Writer, EscapesOnlyWhatItMust) {
  check([](const std::string& text) { return shown(json_quote(text)); }, R"(
    => "" ;; a/b/c => "a/b/c" ;; a/b/c"d => "a\/b\/c\"d" ;; a/b<09> => "a\/b\t" ;; \ => "\\"
    <08><0A><0C><0D> => "\b\n\f\r" ;; <01><07><0B><0E><1F> => "\u0001\u0007\u000B\u000E\u001F"
    <7F><C3><A9> => "<7F><C3><A9>" ;; <7F><C3><A9><0A> => "<7F><C3><A9>\n" ;; a<00>/ => "a<00>/")");
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
