// Where browsers look for the manifests of native-messaging hosts: in folders of their own, or
// under keys of the system's registry that name a file.
#pragma once

#include <string>

namespace platform {

enum class registration_scope { user, system };

// What one browser uses on all systems; each system takes what is its own.
struct browser_places {
  const char* user_folder;    // below the folder of users' settings, or with "~/" the home folder
  const char* system_folder;  // absolute
  const char* registry_key;   // below the user's or the machine's root
  const char* user_data;      // exists once the user has started the browser; like user_folder
  const char* program;        // name of the browser's program
  const char* flatpak;        // its name as a Flatpak
  const char* snap;           // its name as a Snap
};

// Where a manifest is registered.
struct manifest_place {
  std::string file;
  std::string key;  // names `file` in the registry; empty where the file's folder is enough
  registration_scope scope = registration_scope::user;
};

// The place of the manifest `name` for the browser `title`. On systems without a registry all
// folders are seen below `root`, if that isn't empty. An empty file where there is none: the
// environment doesn't tell the user's folders, or the system has no other roots.
manifest_place place_of(const browser_places& browser, const std::string& title,
                        const std::string& name, registration_scope scope, const std::string& root);

// The place for a browser that is started with its own folder for the user's data; empty on systems
// where a browser doesn't look there.
manifest_place place_in_user_data(const std::string& folder, const std::string& name);

// The file that a browser takes for this place, there or not; empty if nothing is registered.
std::string registered_file(const manifest_place& place);

// Makes the registry name the place's file, or nothing; done at once where there is no registry.
bool add_registration(const manifest_place& place, std::string& error);
bool remove_registration(const manifest_place& place, std::string& error);

struct browser_traces {
  bool used = false;       // by this user
  bool installed = false;  // in the system's way
  bool flatpak = false;
  bool snap = false;
};

browser_traces find_browser(const browser_places& browser, const std::string& root);

// True if this program runs for a user other than the one who asked for it, so that a registration
// for "the user" goes to somebody unexpected.
bool runs_for_somebody_else();

}  // namespace platform
