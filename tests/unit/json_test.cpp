#include <bit>
#include <chrono>
#include <cmath>
#include <cstring>

#include "json/parser.h"
#include "json/writer.h"
#include "tests/unit/support.h"

namespace {

std::string dump(const json_node& node);

std::string dump_children(const json_node& node) {
  std::string out;
  const json_node* last = nullptr;
  for (const json_node* child = node.first_child; child != nullptr; child = child->next_sibling) {
    EXPECT_EQ(child->parent, &node);
    out += (last == nullptr ? "" : " ") + dump(*child);
    last = child;
  }
  EXPECT_EQ(node.last_child, last);
  return out;
}

std::string dump_float(float number) {
  char text[16];
  std::snprintf(text, sizeof text, "f%08X", std::bit_cast<std::uint32_t>(number));
  return std::isnan(number) ? "nan" : text;
}

std::string dump(const json_node& node) {
  const std::string name = node.name == nullptr ? "" : shown(node.name) + "=";
  const std::string children = dump_children(node);
  if (node.kind == kind_object) return name + "{" + children + "}";
  if (node.kind == kind_array) return name + "[" + children + "]";
  EXPECT_EQ(children, "");
  const bool is_string = node.kind == kind_string;
  EXPECT_EQ(node.text_length, is_string ? std::strlen(node.value.string) : 0U);
  if (is_string) return name + "\"" + shown(node.value.string) + "\"";
  if (node.kind == kind_int) return name + std::to_string(node.value.integer);
  if (node.kind == kind_float) return name + dump_float(node.value.number);
  if (node.kind == kind_bool) return name + (node.value.boolean == 1 ? "true" : "false");
  return name + (node.value.string == nullptr ? "null" : "a value of no kind");
}

// The tree, or the error's offset and text, or nothing. The text ends where its memory ends.
std::string parsed(const std::string& input) {
  std::vector<char> text(input.c_str(), input.c_str() + input.size() + 1);
  const char *position = nullptr, *description = nullptr;
  scoped_node_arena arena;
  const json_node* const root = json_parse(text.data(), position, description, arena);
  EXPECT_EQ(position == nullptr, description == nullptr);
  if (root != nullptr) return position == nullptr ? dump(*root) : "a root and an error";
  if (position == nullptr) return "";
  return std::to_string(position - text.data()) + " " + description;
}

TEST(Parser, BuildsTheTree) {
  check(parsed, R"(
    => ;; {} => {} ;; [] => [] ;; {} <0D><0A><09><20> => {} ;; [1,2,] => [1 2] ;; [,1,,2] => [1 2]
    [1 2] => [1 2] ;; ["a""b"] => ["a" "b"] ;; ["a"1 {}2 []] => ["a" 1 {} 2 []] ;; {,} => {}
    {"a":1,} => {a=1} ;; {"a" 1} => {a=1} ;; {"a",1} => {a=1} ;; {"a"::1} => {a=1} ;; {:} => {}
    {"a":1,"a":2} => {a=1 a=2} ;; {"a""b""c""d"} => {a="b" c="d"} ;; {"":1} => {=1} ;; {1} => {1}
    {"a":{"b":[1,{"c":null}]},"d":true} => {a={b=[1 {c=null}]} d=true} ;; {"a"} => {}
    [{"a"},1] => [{} a=1] ;; [{"m"},"x"] => [{} m="x"] ;; {"x":{"a"}"b":"c"} => {x={} a="b"}
    [{"a"},[2]] => [{} a=[2]] ;; [true,false,null] => [true false null] ;; [null1] => [null 1]
    [truefalse] => [true false] ;; ["\"\\\/\b\f\n\r\t"] => [""\/<08><0C><0A><0D><09>"]
    ["\u0041\u007f\u0080\u07FF\u0800\uFFFF"] => ["A<7F><C2><80><DF><BF><E0><A0><80><EF><BF><BF>"]
    ["\ud83d\ude00"] => ["<ED><A0><BD><ED><B8><80>"] ;; ["<80><FF><7F>"] => ["<80><FF><7F>"]
    ["\u00e9<C3><A9>"] => ["<C3><A9><C3><A9>"] ;; ["a\u0000b",1] => ["a" 1]
    {"a\u0000b":1,"\t":2} => {a=1 <09>=2} ;; [1<09>2<0D>3<0A>4] => [1 2 3 4]
    [007] => [7] ;; [-] => [0] ;; [-0] => [0] ;; [2147483647] => [2147483647]
    [2147483648] => [-2147483648] ;; [-2147483648] => [-2147483648] ;; [4294967295] => [-1]
    [4294967296] => [0] ;; [-4294967295] => [1] ;; [10000000000] => [1410065408])");
}

TEST(Parser, ComputesFloatsInSinglePrecisionStepByStep) {
  const auto start = std::chrono::steady_clock::now();
  const auto number = [](const std::string& text) {
    const std::string tree = parsed("[" + text + "]");
    return tree.substr(1, tree.size() - 2);
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

TEST(Parser, NamesTheErrorAndItsPlace) {
  const std::pair<const char*, const char*> errors[] = {
      {"Second root. Only one root allowed", "{}{} => 3 ;; [][ => 3 ;; {} [ => 4"},
      {"Mismatch closing brace/bracket", "} => 0 ;; ] => 0 ;; {}} => 2 ;; [} => 1 ;; [{]} => 2"},
      {"Unexpected character", R"(<20>{} => 0 ;; <0A> => 0 ;; "x" => 0 ;; 1 => 0 ;; -1 => 0
        true => 0 ;; , => 0 ;; : => 0 ;; <EF><BB><BF>{} => 0 ;; {}x => 2 ;; {}, => 2 ;; [.5] => 1
        [1] <0B> => 4 ;; [:] => 1 ;; [/*x*/] => 1 ;; [<80>] => 1 ;; [<01>] => 1 ;; [truex] => 5
        [True] => 1 ;; [+1] => 1)"},
      {"Control characters not allowed in strings",
       R"(["a<09>b"] => 2 ;; ["ab<1F>"] => 2 ;; ["\n<0A>"] => 2 ;; [1,"a<0A> => 4)"},
      {"Bad unicode codepoint", R"(["\u12"] => 2 ;; ["ab\u12g4"] => 4 ;; ["\u => 2 ;; ["a\u00 => 3
        ["\n\u00 => 4 ;; ["\u00<E9>9"] => 2)"},
      {"Unrecognized escape sequence",
       R"(["ab\q"] => 2 ;; ["a\ => 2 ;; ["\n\U0041"] => 2 ;; ["\<C3><A9>"] => 2)"},
      {"Unknown identifier", R"([tru] => 1 ;; [nul] => 1 ;; [fals => 1 ;; {"a":n => 5)"},
      {"Bad integer number", R"([--1] => 1 ;; [1-2] => 1 ;; [0x10] => 1 ;; [1null] => 1
        [1"a"] => 1 ;; {"a":1:2} => 5 ;; [7x => 1 ;; [1[2]3] => 1 ;; [1<0B>] => 1)"},
      {"Bad float number",
       "[1e2x] => 1 ;; [1.2.3] => 1 ;; [1x.] => 1 ;; [1true] => 1 ;; [1e+-2] => 1"},
      {"Not all objects/arrays have been properly closed", R"([ => 1 ;; ["a => 3 ;; ["a\n => 5
        {"a => 3 ;; [7 => 2 ;; [1.5 => 4 ;; {"a":[1] => 8 ;; [1<0A><20> => 4)"}};
  for (const auto& [error, table] : errors) {
    const auto place = [behind = std::string(" ") + error](const std::string& text) {
      const std::string outcome = parsed(text);
      const std::size_t at = outcome.find(behind);
      return at + behind.size() == outcome.size() ? outcome.substr(0, at) : outcome;
    };
    check(place, table);
  }
}

TEST(Parser, StopsAtASpecialByteWhereverItStands) {
  for (std::size_t at = 0; at < 40; ++at) {
    const std::string open = "[\"" + std::string(at, '\xFF'), after(20, '\x7F');
    EXPECT_EQ(parsed(open + "\\n" + after + "\"]"), shown(open + "\n" + after + "\"]"));
    EXPECT_EQ(parsed(open + '\x1F' + after), "2 Control characters not allowed in strings");
    EXPECT_EQ(parsed(open),
              std::to_string(open.size()) + " Not all objects/arrays have been properly closed");
  }
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
  const char *position = nullptr, *description = nullptr;
  scoped_node_arena arena;
  const json_node* const root = json_parse(text.data(), position, description, arena);
  EXPECT_EQ(dump(*root), R"({k="a<09>b" n=[1 f40200000 null]})");
  EXPECT_EQ(shown(text), R"({"k<00>:"a<09>b<00>","n<00>:[1,2.5,null]})");
}

TEST(Writer, SeesASpecialByteWhereverItStands) {
  for (std::size_t size = 1; size < 40; ++size) {
    const std::string plain(size, '/');
    EXPECT_EQ(json_quote(plain), '"' + plain + '"');
    for (std::size_t at = 0; at < size; ++at) {
      std::string text(size, '\xFF'), expected = text;
      text[at] = '"';
      expected.insert(at, "\\").at(at + 1) = '"';
      EXPECT_EQ(json_quote(text), '"' + expected + '"');
      text[at] = '\0';
      EXPECT_EQ(json_quote(text), '"' + text + '"');
    }
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
