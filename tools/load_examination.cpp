#include "tools/load_examination.h"

#include <string_view>
#include <thread>

#include "host/exit_times.h"
#include "platform/child_process.h"
#include "platform/files.h"
#include "platform/library_facts.h"
#include "platform/library_loading.h"
#include "platform/module_folder.h"

namespace {

constexpr std::size_t largest_library = std::size_t{64} << 20;
constexpr std::string_view child_command = "--examine-loading";

// How long a host may take to start and end.
constexpr std::chrono::milliseconds loading_timeout{5000};

constexpr std::chrono::milliseconds settling_time{50};

// The parent gives up long before.
constexpr std::chrono::minutes longest_end{20};

constexpr char install_again[] = "Install the agent again, for this system and processor.";
constexpr char for_its_author[] =
    "Update the agent. Authors: docs/library.md tells what a library has to export.";

report_entry fault(const char* id, std::string text, std::string advice) {
  return {"", severity::fault, id, std::move(text), std::move(advice)};
}

// Nothing for a file that can't be read or is larger than any library.
std::optional<platform::library_facts> facts_of(const std::string& path) {
  std::string content, ignored;
  if (!platform::read_file(path, largest_library, content, ignored)) return std::nullopt;
  return platform::facts_of_library(content);
}

void tell_load_error(const std::string& path, const platform::load_attempt& attempt,
                     account& told) {
  if (!attempt.missing.empty()) {
    told.add(severity::fault, "dependency-missing",
             path + " needs " + attempt.missing + ", which isn't found",
             "Install what brings " + attempt.missing +
                 ". Authors: link it into the library, or put it beside.");
  } else {
    const std::string reason = attempt.error.empty() ? "its file is damaged" : attempt.error;
    told.add(severity::fault, "library-unloadable", path + " can't be loaded: " + reason,
             install_again);
  }
}

}  // namespace

std::string own_program(const char* name) {
  return platform::program_file_name(platform::module_folder() + name);
}

std::optional<report_entry> fault_of_file(const std::string& library, const std::string& program) {
  const platform::file_facts file = platform::look_at(library);
  if (!file.exists) return fault("library-missing", "there is no " + library, install_again);
  const auto found = facts_of(library);
  const auto own = facts_of(program);
  if (!found.has_value() || !own.has_value()) return std::nullopt;
  if (found->system.empty() || !found->is_library) {
    const char* const what = found->system.empty() ? " is no library" : " is a program, no library";
    return fault("not-a-library", library + what, install_again);
  }
  const bool other_system = found->system != own->system;
  if (!other_system && found->machine == own->machine) return std::nullopt;
  const auto target = [other_system](const platform::library_facts& facts) {
    return other_system ? facts.system + " on " + facts.machine : facts.machine;
  };
  return fault("other-architecture",
               library + " is for " + target(*found) + ", this host for " + target(*own),
               install_again);
}

opened_library open_library(const std::string& path, account& told) {
  opened_library library;
  told.step("its loading");
  const platform::load_attempt attempt = platform::try_to_load(path);
  library.module = attempt.module;
  if (library.module == nullptr) return tell_load_error(path, attempt, told), library;

  void* const entry = platform::library_symbol(library.module, api_entry_name);
  if (entry == nullptr) {
    told.add(severity::fault, "api-missing", path + " doesn't export Api", for_its_author);
    return library;
  }
  told.step("Api");
  library.api = reinterpret_cast<api_entry*>(entry)();
  if (library.api == nullptr) {
    told.add(severity::fault, "api-null", path + " gives nothing from Api",
             "See what it writes to standard error; its own configuration may be faulty.");
    return library;
  }
  told.step("getInterface");
  library.client = static_cast<iCfClient*>(library.api->getInterface(client_interface));
  if (library.client == nullptr) {
    told.add(severity::fault, "interface-missing", path + " doesn't give iCfClient.1",
             "Update the agent: it is too old or too new for this host.");
  }
  return library;
}

void unload(const opened_library& library, account& told) {
  told.step("its unloading");
  const auto begin = std::chrono::steady_clock::now();
  if (library.module != nullptr) platform::unload_library(library.module);
  const auto duration = std::chrono::steady_clock::now() - begin;
  if (duration > unload_timeout) {
    told.add(severity::fault, "end-late",
             "its unloading takes longer than " + std::to_string(unload_timeout.count()) + " ms",
             "The host won't wait for it. Let its threads stop at once when it is unloaded.");
  }
}

void end_examination(account& told) {
  told.step("the process that it was unloaded from");
  std::this_thread::sleep_for(settling_time);
  told.done();
  platform::end_process(0, longest_end);
}

std::optional<report_entry> fault_of_loading(const std::string& library,
                                             const std::string& program) {
  if (auto found = fault_of_file(library, program)) return found;
  const child_account child =
      run_examination(program, {std::string(child_command), library}, loading_timeout);
  for (const report_entry& entry : child.entries) {
    if (entry.weight == severity::fault) return entry;
  }
  return judge_end(child, library, loading_timeout);
}

void serve_load_examination(int argc, char** argv) {
  if (argc != 4 || argv[1] != child_command) return;
  platform::crash_quietly();
  static account told(argv[3]);
  unload(open_library(argv[2], told), told);
  end_examination(told);
}
