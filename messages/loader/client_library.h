// Loads the client library that lies beside the executable. Main thread only.
#pragma once

#include "messages/agent_interface.h"
#include "platform/platform.h"

struct client_loader {
  wide_string path;                          // of the last load, even if it failed
  platform::module_handle module = nullptr;  // null while no library is loaded
  cfApi* api = nullptr;                      // the library's root object, or null
};

// The one loader of the process; unload_client_library is its exit action.
extern client_loader client_library;

// The connection to the agent. Written once, before the observer is registered.
extern iCfClient* agent_client;

// Loads the client library from the folder that holds `module`, never from the working directory.
// True if it is loaded and has its entry, even if the entry returned null.
bool load_client_next_to(platform::module_handle module);

// Loads the library at `path`. False, with nothing loaded, if there is none or it lacks its entry.
// Also false while a library is loaded; that one stays.
bool load_client_library(const wide_string& path);

// Forgets the library's objects, then unloads it.
void unload_client_library();
