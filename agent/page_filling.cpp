#include "agent/page_filling.h"

#include <algorithm>
#include <cstdio>

#include "agent/explanation.h"
#include "agent/user_field.h"

namespace {

// The one input that has `value` under `key`; nothing if several do.
std::optional<position> only_input(const CfMsgWebsite& page, const wide_char* key,
                                   wide_view value) {
  std::optional<position> found;
  for (position i = 0; i < page.inputs.size(); ++i) {
    if (value_of(page.inputs[i], key) != value) continue;
    if (found) return std::nullopt;
    found = i;
  }
  return found;
}

bool is_asked_by_user(const CfMsgWebsite& page) {
  return value_of(page.props, u"user-state") == u"drop-down";
}

// The input that the user points at, if it can be told from the others.
std::optional<position> pointed_input(const CfMsgWebsite& page) {
  const wide_view name = value_of(page.props, u"click-source");
  if (!is_asked_by_user(page) || name.empty()) return std::nullopt;
  const std::optional<position> by_id = only_input(page, u"id", name);
  return by_id ? by_id : only_input(page, u"name", name);
}

// The part of a login that an input may get if the user asks for it there.
filling part_for(field_kind kind) {
  const bool is_current = kind == field_kind::password || kind == field_kind::current_password;
  if (is_current) return filling::password;
  return fitness_for_user(kind) > 0 ? filling::user : filling::none;
}

void fill_form(const page_form& form, std::vector<filling>& fillings) {
  if (form.user) fillings[*form.user] = filling::user;
  if (form.password) fillings[*form.password] = filling::password;
}

// The user knows about the one input; of the other inputs in its form only those that fit are
// filled.
void fill_around(position pointed, const page_reading& reading, std::vector<filling>& fillings) {
  const filling part = part_for(reading.fields[pointed].kind);
  if (part == filling::none) return;
  page_form form = reading.form_of(pointed);
  (part == filling::user ? form.user : form.password) = pointed;
  fill_form(form, fillings);
}

bool is_for_login(const page_form& form) {
  return form.kind == page_kind::login || form.kind == page_kind::change_password;
}

// The only form that may be a login, and has a password; null if there is none, or several.
const page_form* only_doubtful(const std::vector<page_form>& forms) {
  const page_form* found = nullptr;
  for (const page_form& form : forms) {
    if (form.kind != page_kind::unsure || !form.password) continue;
    if (found != nullptr) return nullptr;
    found = &form;
  }
  return found;
}

void fill_forms(const page_reading& reading, bool by_user, std::vector<filling>& fillings) {
  for (const page_form& form : reading.forms) {
    if (is_for_login(form)) fill_form(form, fillings);
  }
  if (!by_user || std::any_of(reading.forms.begin(), reading.forms.end(), is_for_login)) return;
  const page_form* const form = only_doubtful(reading.forms);
  if (form != nullptr) fill_form(*form, fillings);
}

void set_input(propsW_t& input, const wide_char* schema, const wide_string& value) {
  input.set(u"value", value.c_str(), true);
  input.set(u"cf-schema", schema, true);
  input.set(u"cf-value", value.c_str(), true);
}

// What an earlier answer said about the input no longer counts.
void forget_answer(propsW_t& input) {
  input.set(u"cf-schema", u"", true);
  input.set(u"cf-value", u"", true);
}

void fill_inputs(CfMsgWebsite& page, const std::vector<filling>& fillings, const login& entry) {
  for (position i = 0; i < fillings.size(); ++i) {
    if (fillings[i] == filling::user) set_input(page.inputs[i], u"user", entry.user);
    if (fillings[i] == filling::password) set_input(page.inputs[i], u"password", entry.password);
  }
}

}  // namespace

std::vector<filling> decide(const CfMsgWebsite& page, const page_reading& reading) {
  std::vector<filling> fillings(reading.fields.size());
  const std::optional<position> pointed = pointed_input(page);
  if (pointed && *pointed < fillings.size()) {
    fill_around(*pointed, reading, fillings);
  } else {
    fill_forms(reading, is_asked_by_user(page), fillings);
  }
  for (position i = 0; i < fillings.size(); ++i) {
    if (!reading.fields[i].editable) fillings[i] = filling::none;
  }
  return fillings;
}

void fill_page(CfMsgWebsite& page, const coffer& store) {
  for (propsW_t& input : page.inputs) {
    forget_answer(input);
    if (store.locked()) input.set(u"value", u"", true);
  }
  const login* const entry = store.find(value_of(page.props, u"source"));
  if (entry != nullptr) page.props.set(u"known-login", entry->user.c_str(), true);
  if (entry == nullptr && !store.explain) return;
  const page_reading reading = read_page(page);
  const std::vector<filling> fillings = decide(page, reading);
  if (store.explain) {
    const std::string lines = explanation(page, reading, fillings, entry != nullptr);
    std::fwrite(lines.data(), 1, lines.size(), stderr);
  }
  if (entry != nullptr) fill_inputs(page, fillings, *entry);
}
