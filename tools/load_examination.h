// Finds out why a library can't be loaded, or doesn't give its interface.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "messages/agent_interface.h"
#include "platform/platform.h"
#include "tools/examination_child.h"
#include "tools/report.h"

// The path of the program `name` in this program's folder.
std::string own_program(const char* name);

// What can be seen without loading the file: that it isn't there, isn't a library, or is for
// another system or processor than `program`. Nothing if it can probably be loaded.
std::optional<report_entry> fault_of_file(const std::string& library, const std::string& program);

// The child's side: loads the library at this absolute path and asks for its interface. Reports
// what goes wrong; `client` is null then.
struct opened_library {
  platform::module_handle module = nullptr;
  cfApi* api = nullptr;
  iCfClient* client = nullptr;
};
opened_library open_library(const std::string& path, account& told);

// Unloads the library, and reports if that takes longer than the host allows.
void unload(const opened_library& library, account& told);

// Ends the child as the host ends, but without its time limit. First waits a moment, in which
// threads of the library that still run would crash.
[[noreturn]] void end_examination(account& told);

// The fault that keeps the host from using the library. A child finds it: it runs `program`, which
// must call serve_load_examination first in main. Nothing if the library loads, gives its interface
// and unloads.
std::optional<report_entry> fault_of_loading(const std::string& library,
                                             const std::string& program);

// Doesn't return if this process was started as such a child.
void serve_load_examination(int argc, char** argv);
