#include "agent/coffer_file.h"

#include <cstring>
#include <string_view>

#include "agent/json_text.h"
#include "agent/public_suffix.h"
#include "platform/files.h"
#include "transport/codecs/text.h"

namespace {

constexpr std::size_t largest_file = std::size_t{1} << 20;

wide_string wide(const json_node& node) {
  wide_string text;
  utf8_to_wide(text, node.value.string, static_cast<std::uint32_t>(std::strlen(node.value.string)));
  return text;
}

// Reads one text. Each step returns false after noting what is wrong, and where.
class coffer_reader {
 public:
  coffer_reader(std::string_view text, coffer& target) : text_(text), target_(target) {}

  bool read() {
    scoped_node_arena arena;
    const json_node* const root = text_.parse(arena);
    if (root == nullptr) return false;
    if (!text_.expect(*root, kind_object, "an object")) return false;
    if (!each_child(*root, &coffer_reader::read_member)) return false;
    // Last, since a locked coffer takes no logins.
    if (locked_) target_.lock();
    return true;
  }

  const std::string& problem() const { return text_.problem(); }

 private:
  using step = bool (coffer_reader::*)(const json_node& node);

  bool each_child(const json_node& container, step read_child) {
    for (const json_node* child = container.first_child; child != nullptr;
         child = child->next_sibling) {
      if (!(this->*read_child)(*child)) return false;
    }
    return true;
  }

  bool read_member(const json_node& member) {
    const std::string_view name = json_text::name_of(member);
    if (name == "locked") return read_flag(member, locked_);
    if (name == "explain") return read_flag(member, target_.explain);
    if (name == "settings") {
      return text_.expect(member, kind_object, "an object") &&
             each_child(member, &coffer_reader::read_setting);
    }
    if (name == "logins") {
      return text_.expect(member, kind_array, "an array") &&
             each_child(member, &coffer_reader::read_login);
    }
    return unknown(member, "locked, explain, settings and logins");
  }

  bool read_flag(const json_node& member, bool& flag) {
    flag = member.kind == kind_bool && member.value.boolean != 0;
    return text_.expect(member, kind_bool, "true or false");
  }

  bool read_setting(const json_node& setting) {
    if (!text_.expect(setting, kind_string, "a text")) return false;
    const std::string_view name = json_text::name_of(setting);
    wide_string key;
    if (name.empty() || !utf8_to_wide(key, name.data(), static_cast<std::uint32_t>(name.size()))) {
      return text_.fail(setting, "a setting needs a name");
    }
    target_.settings.set(key.c_str(), wide(setting).c_str());
    return true;
  }

  bool read_login(const json_node& node) {
    if (!text_.expect(node, kind_object, "an object")) return false;
    site_.clear();
    login_ = login();
    if (!each_child(node, &coffer_reader::read_login_member)) return false;
    const std::optional<origin> o = origin_of_site(site_);
    if (!o || login_.password.empty()) {
      return text_.fail(node, "a login needs a site and a password");
    }
    if (login_.subdomains && is_public_suffix(o->host)) {
      return text_.fail(node, "the subdomains of this site belong to different people");
    }
    if (target_.has(*o)) return text_.fail(node, "there is a login for this site already");
    return target_.store(*o, login_) ||
           text_.fail(node, "too many logins, or one that is too long");
  }

  bool read_login_member(const json_node& member) {
    const std::string_view name = json_text::name_of(member);
    if (name == "subdomains") return read_flag(member, login_.subdomains);
    if (!text_.expect(member, kind_string, "a text")) return false;
    if (name == "site") {
      site_ = wide(member);
    } else if (name == "user") {
      login_.user = wide(member);
    } else if (name == "password") {
      login_.password = wide(member);
    } else {
      return unknown(member, "site, user, password and subdomains");
    }
    return true;
  }

  bool unknown(const json_node& member, const char* known) {
    return text_.fail(member, "unknown member; known are " + std::string(known));
  }

  json_text text_;
  coffer& target_;
  bool locked_ = false;
  wide_string site_;  // of the login that is being read
  login login_;
};

// People who try the agent want to see logins filled, unless the file says otherwise.
void let_fill(coffer& target) {
  target.settings.set(u"pwdman.enabled", u"true");
  target.settings.set(u"pwdman.autofillEnabled", u"true");
}

void fill_with_demo(coffer& target) {
  target.store({"https", "example.com", 443}, {u"demo", u"demo password"});
}

}  // namespace

bool load_coffer(const std::string& path, coffer& target, std::string& problem) {
  let_fill(target);
  if (!platform::look_at(path).exists) {
    fill_with_demo(target);
    return true;
  }
  std::string text;
  if (!platform::read_file(path, largest_file, text, problem)) return false;
  coffer_reader reader(text, target);
  if (reader.read()) return true;
  // The position follows the file's name directly, as in compiler messages.
  problem = path + ':' + reader.problem();
  return false;
}
