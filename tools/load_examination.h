// Why a library can't be loaded, or doesn't give its interface.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "messages/agent_interface.h"
#include "platform/platform.h"
#include "tools/examination_child.h"
#include "tools/report.h"

// Path of the program `name` in the folder of this one.
std::string own_program(const char* name);

// What the file tells without being loaded: that it isn't there, is no library, or is for another
// system or processor than `program`. Nothing if it may well be loaded.
std::optional<report_entry> fault_of_file(const std::string& library, const std::string& program);

// The child's side: loads the library at this absolute path and asks for its interface. Tells what
// goes wrong; `client` is null then.
struct opened_library {
  platform::module_handle module = nullptr;
  cfApi* api = nullptr;
  iCfClient* client = nullptr;
};
opened_library open_library(const std::string& path, account& told);

// Unloads it, as quickly as the host wants it done.
void unload(const opened_library& library, account& told);

// Ends the child as the host ends, but without its limit of time, after a moment in which threads
// of the library that still run come to grief.
[[noreturn]] void end_examination(account& told);

// The fault that keeps the host from using the library, found by a child that runs `program`, which
// has to call serve_load_examination first thing in main. Nothing if the library loads, gives its
// interface and unloads.
std::optional<report_entry> fault_of_loading(const std::string& library,
                                             const std::string& program);

// Doesn't return if the process was started as such a child.
void serve_load_examination(int argc, char** argv);
