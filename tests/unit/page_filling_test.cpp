// What the development agent fills, and what it keeps of what was typed.
#include "agent/page_filling.h"

#include <random>
#include <regex>

#include "agent/explanation.h"
#include "agent/typed_login.h"
#include "tests/unit/table.h"
#include "tests/unit/wide.h"

namespace {

void set(propsW_t& bag, const wide_char* key, const std::string& text) {
  bag.set(key, wide(text).c_str(), true);
}

// A page as a row describes it: "title | path | input input ...". An input is
// "type:name/label#form" with '_' for blanks in label and form, '!' in front for a readonly one and
// '*' for the one that the user points at. "=value" behind it is what was typed.
std::unique_ptr<CfMsgWebsite> page_of(const std::string& row) {
  static const std::regex parts(R"(([^|]*?) *\| *(\S*) *\|(.*))");
  static const std::regex one(R"(([!*]?)(\w+):([^ /#=]*)(?:/([^ #=]*))?(?:#([^ =]*))?(?:=(\S*))?)");
  auto made = std::make_unique<CfMsgWebsite>();
  CfMsgWebsite& page = *made;
  std::smatch part;
  EXPECT_TRUE(std::regex_match(row, part, parts)) << row;
  set(page.props, u"title", part[1]);
  set(page.props, u"source", "https://a.example" + part[2].str());
  const std::string inputs = part[3];
  for (std::sregex_iterator at(inputs.begin(), inputs.end(), one), end; at != end; ++at) {
    propsW_t& input = page.inputs.emplace_back();
    if ((*at)[1] == "!") set(input, u"readonly", "true");
    if ((*at)[1] == "*") {
      set(page.props, u"user-state", "drop-down");
      set(page.props, u"click-source", (*at)[3]);
    }
    set(input, u"type", (*at)[2]);
    set(input, u"name", (*at)[3]);
    set(input, u"context", std::regex_replace((*at)[4].str(), std::regex("_"), " "));
    set(input, u"form-context", std::regex_replace((*at)[5].str(), std::regex("_"), " "));
    set(input, u"value", (*at)[6]);
  }
  return made;
}

struct filled_coffer : coffer {
  filled_coffer() { store({"https", "a.example", 443}, {u"U", u"P"}); }
};

// A letter for each input: 'u' and 'p' for those that get the user and the password.
std::string filled(const std::string& row) {
  const auto page = page_of(row);
  fill_page(*page, filled_coffer());
  std::string letters;
  EXPECT_TRUE(value_of(page->props, u"known-login") == u"U") << row;
  for (const propsW_t& input : page->inputs) {
    const wide_view schema = value_of(input, u"cf-schema"), value = value_of(input, u"cf-value");
    EXPECT_TRUE(value == (schema == u"user" ? u"U" : schema == u"password" ? u"P" : u"")) << row;
    letters += schema.empty() ? '-' : static_cast<char>(schema[0]);
  }
  return letters;
}

std::string kept(const std::string& row) {
  const std::optional<login> typed = typed_login(*page_of(row));
  return typed ? "[" + shown(typed->user) + "] " + shown(typed->password) : "nothing";
}

}  // namespace

TEST(PageFilling, FillsLoginsAndNothingElse) { check_file(filled, PAGES "/logins.txt"); }

TEST(PageFilling, LeavesAloneWhatIsNoLogin) { check_file(filled, PAGES "/others.txt"); }

TEST(PageFilling, FillsWhereTheUserPointsUnlessThatIsPlainlySomethingElse) {
  check_file(filled, PAGES "/pointed.txt");
}

// Random forms made from everything in the rows above.
TEST(PageFilling, PutsNoPasswordIntoATextInput) {
  const std::string types[] = {"text", "password", "email", "tel", "search", "number", "url", "x"};
  const std::string names[] = {"password", "passwort", "current_password", "q",   "user", "email",
                               "old",      "cvc",      "new_password",     "otp", "f1",   "login"};
  const std::string titles[] = {"Sign in", "Sign up", "Change password", ""};
  std::mt19937 random(7);
  const auto any = [&](const auto& list) { return list[random() % std::size(list)]; };
  for (int i = 0; i < 600; ++i) {
    std::string row = any(titles) + " | / | ", chosen;
    for (auto inputs = random() % 6; inputs > 0; --inputs) {
      const std::string type = any(types);
      chosen += type[0] == 'p' ? 'p' : '-';
      row += (random() % 9 == 0 ? "*" : "") + type + ":" + any(names) + "#" + any(names) + " ";
    }
    const std::string letters = filled(row);
    for (std::size_t at = 0; at < letters.size(); ++at) {
      EXPECT_EQ(letters[at] == 'p', letters[at] == 'p' && chosen[at] == 'p') << row << letters;
      EXPECT_FALSE(letters[at] == 'u' && chosen[at] == 'p') << row << letters;
    }
  }
}

TEST(TypedLogin, IsThePasswordThatCountsFromNowOn) {
  check_file(kept, PAGES "/typed.txt");
  filled_coffer store;
  store.keep_typed(u"https://a.example/change", {u"", u"changed"});
  EXPECT_EQ(shown(store.find(u"https://a.example")->user), "U");
}

TEST(Explanation, TellsWhatBecomesOfEachInputWithoutValues) {
  const auto made = page_of("Sign in | / | text:user=secret password:p\x1b[31m=secret !text:a#f");
  const CfMsgWebsite& page = *made;
  const page_reading reading = read_page(page);
  EXPECT_EQ(explanation(page, reading, decide(page, reading), true),
            "cfagent: page of https://a.example:443, 3 inputs\n"
            "cfagent:   1 \"user\": account, form: login: filled with the user\n"
            "cfagent:   2 \"p?[31m\": password, form: login: filled with the password\n"
            "cfagent:   3 \"a\": text of unknown purpose, form: unsure: left alone, since it is "
            "readonly\n");
}
