#include "tools/setup/manifest_choice.h"

#include <algorithm>

#include "platform/files.h"
#include "tools/setup/places.h"

namespace {

using platform::manifest_place;
using platform::registration_scope;

bool has(const std::vector<std::string>& ids, const std::string& id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// Whether the browser can use it for one of the extensions; for any if none is named.
bool is_usable(const present_manifest& present, const std::vector<std::string>& ids) {
  const auto is_let_in = [&present](const std::string& id) { return has(present.ids, id); };
  return present.registered && present.faults.empty() && !present.path.empty() &&
         (ids.empty() || std::any_of(ids.begin(), ids.end(), is_let_in));
}

manifest_place place_at(const browser& of, const setup_options& options, registration_scope scope) {
  std::string ignored;
  return chosen_place(of, options, scope, ignored);
}

}  // namespace

registration_scope manifest_choice::scope() const {
  return takes_shared ? registration_scope::system : registration_scope::user;
}

bool manifest_choice::lets_in(const std::string& id) const {
  return has(taken().ids, id) || (takes_either && is_usable(shared, {id}));
}

manifest_choice choose_manifest(const browser& of, const setup_options& options, bool forbids_own) {
  manifest_choice choice;
  const manifest_place place = place_at(of, options, registration_scope::user);
  const auto& ids = options.ids(of.ids);
  choice.own = look_at_present(place, of.ids);
  if (!options.has_own_folder()) {
    choice.shared = look_at_present(place_at(of, options, registration_scope::system), of.ids);
  }
  // Firefox goes on from what it can't use, Chromium only from what isn't there. A registry's key
  // is the last word with both.
  const bool may_go_on = place.key.empty();
  choice.takes_either = may_go_on && of.ids == id_form::firefox;
  const bool goes_on = choice.takes_either
                           ? !is_usable(choice.own, ids)
                           : may_go_on && !platform::look_at(choice.own.file).exists;
  choice.takes_shared = forbids_own || (!choice.own.registered && choice.shared.registered) ||
                        (goes_on && is_usable(choice.shared, ids));
  return choice;
}
