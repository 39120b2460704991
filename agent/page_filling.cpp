#include "agent/page_filling.h"

namespace {

wide_view value_of(const propsW_t& bag, const wide_char* key) { return bag.get(key, u""); }

// Page authors write types and truth values in letters of either case.
bool equals(wide_view text, wide_view small_letters) {
  if (text.size() != small_letters.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool capital = text[i] >= u'A' && text[i] <= u'Z';
    if ((capital ? text[i] - u'A' + u'a' : text[i]) != small_letters[i]) return false;
  }
  return true;
}

bool is_password(const propsW_t& input) { return equals(value_of(input, u"type"), u"password"); }

bool is_user(const propsW_t& input) {
  const wide_view type = value_of(input, u"type");
  return equals(type, u"text") || equals(type, u"email");
}

bool is_readonly(const propsW_t& input) {
  const wide_view text = value_of(input, u"readonly");
  return !text.empty() && !equals(text, u"false") && text != u"0";
}

// The two inputs, as positions in the page's list; the end of the list where there is none.
template <class Iterator>
struct login_inputs {
  Iterator user;
  Iterator password;
};

template <class List, class Filter>
auto find_login_inputs(List& inputs, Filter counts) {
  auto first_user = inputs.end();
  auto last_user = inputs.end();
  for (auto input = inputs.begin(); input != inputs.end(); ++input) {
    if (!counts(*input)) continue;
    if (is_password(*input)) return login_inputs<decltype(input)>{last_user, input};
    if (!is_user(*input)) continue;
    last_user = input;
    if (first_user == inputs.end()) first_user = input;
  }
  return login_inputs<decltype(first_user)>{first_user, inputs.end()};
}

void set_input(propsW_t& input, const wide_char* schema, const wide_string& value) {
  input.set(u"value", value.c_str(), true);
  input.set(u"cf-schema", schema, true);
  input.set(u"cf-value", value.c_str(), true);
}

// What an earlier answer said of the input no longer counts.
void forget_answer(propsW_t& input) {
  input.set(u"cf-schema", u"", true);
  input.set(u"cf-value", u"", true);
}

}  // namespace

bool is_submitted(const CfMsgWebsite& page) {
  return !value_of(page.props, u"submit-source").empty() ||
         value_of(page.props, u"source-event") == u"submit";
}

std::optional<login> typed_login(const CfMsgWebsite& page) {
  const auto has_value = [](const propsW_t& input) { return !value_of(input, u"value").empty(); };
  const auto found = find_login_inputs(page.inputs, has_value);
  if (found.password == page.inputs.end()) return std::nullopt;
  login typed;
  typed.password = value_of(*found.password, u"value");
  if (found.user != page.inputs.end()) typed.user = value_of(*found.user, u"value");
  return typed;
}

void fill_page(CfMsgWebsite& page, const coffer& store) {
  for (propsW_t& input : page.inputs) {
    forget_answer(input);
    if (store.locked()) input.set(u"value", u"", true);
  }
  const login* const entry = store.find(value_of(page.props, u"source"));
  if (entry == nullptr) return;
  const auto found =
      find_login_inputs(page.inputs, [](const propsW_t& input) { return !is_readonly(input); });
  if (found.user != page.inputs.end()) set_input(*found.user, u"user", entry->user);
  if (found.password != page.inputs.end()) set_input(*found.password, u"password", entry->password);
}
