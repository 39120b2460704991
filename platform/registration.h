// Where browsers look for the manifests of native-messaging hosts: in folders of their own, or
// under keys of the system's registry that name a file.
#pragma once

#include <string>

namespace platform {

enum class registration_scope { user, system };

// What one browser uses on all systems; each system takes what applies to it. Where several values
// are allowed, a colon separates them.
struct browser_places {
  const char* user_folder;     // below the folder of users' settings, or with "~/" the home folder
  const char* system_folder;   // absolute
  const char* registry_key;    // below the user's or the machine's root
  const char* registry_owner;  // the browser whose key that is; several may share one
  const char* user_data;   // exist once the user has started the browser; several, like user_folder
  const char* programs;    // names of the browser's program; several
  const char* flatpak;     // its name as a Flatpak
  const char* snap;        // its name as a Snap
  const char* policies;    // folders of an administrator's policies; several
  const char* policy_key;  // where the registry has them, likewise
};

// Where a manifest is registered.
struct manifest_place {
  std::string file;
  std::string key;  // names `file` in the registry; empty where the file's folder is enough
  registration_scope scope = registration_scope::user;
};

// The place of the manifest `name`. On systems without a registry all folders are looked for below
// `root`, unless that is empty. The file is empty if there is no place: the environment doesn't
// name the user's folders, or the system doesn't support other roots.
manifest_place place_of(const browser_places& browser, const std::string& name,
                        registration_scope scope, const std::string& root);

// The place in a folder that the user names, or in that of a browser in a Flatpak sandbox; empty on
// systems where browsers don't look there.
manifest_place place_in_folder(const std::string& folder, const std::string& name);
manifest_place place_in_flatpak(const browser_places& browser, const std::string& name,
                                const std::string& root);

// Where `path` lies on systems without a registry: below `root` unless that is empty, and below the
// home folder if it begins with "~/". Empty elsewhere, and without a home folder.
std::string path_in_system(const std::string& path, const std::string& root);

// The host that a manifest in `file` means by `named`; empty if browsers don't accept that.
std::string host_of_manifest(const std::string& file, const std::string& named);

// The file that a browser uses for this place, whether it exists or not; empty if nothing is
// registered.
std::string registered_file(const manifest_place& place);

// Make the registry name the place's file, or no file. Without a registry there is nothing to do.
bool add_registration(const manifest_place& place, std::string& error);
bool remove_registration(const manifest_place& place, std::string& error);

struct browser_traces {
  bool used = false;       // by this user
  bool installed = false;  // in the system's way
  bool flatpak = false;
  bool snap = false;
};

browser_traces traces_of(const browser_places& browser, const std::string& root);

// True if this program runs as a user other than the one who asked for it, so that a registration
// for "the user" would go to the wrong one.
bool runs_for_somebody_else();

}  // namespace platform
