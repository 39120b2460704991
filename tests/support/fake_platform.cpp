#include "tests/support/fake_platform.h"

#include <cstdlib>

#include "host/diagnostics/diagnostics.h"

namespace {

fake::system_state state;

std::string narrow(wide_view text) { return {text.begin(), text.end()}; }

}  // namespace

fake::system_state& fake::system() { return state; }

void fake::reset(bool diagnostics) {
  state = system_state();
  dump_off = !diagnostics;
}

namespace platform {

bool wait_for_input(std::FILE*) { return false; }

std::size_t read_ahead(std::FILE*) { return 0; }

bool wait_for_output(std::FILE*, std::size_t, input_question, std::chrono::milliseconds) {
  return true;
}

int forbid_cancellation() { return 0; }
void allow_cancellation(int) {}

void leave_now(int exit_value) { std::_Exit(exit_value); }

std::size_t config_value(const config_key& key, wide_char* out, std::size_t capacity) {
  state.config_key = narrow(key.folder) + "/" + narrow(key.file) + " " + narrow(key.section) + "." +
                     narrow(key.key);
  const std::size_t delivered = state.config_text.copy(out, capacity - 1);
  out[delivered] = 0;
  return delivered;
}

std::int32_t leading_integer(const wide_char* text) { return std::atoi(narrow(text).c_str()); }

void write_debug_line(const char* line) { ++state.debug_calls, state.lines.push_back(line); }
void write_debug_line(const wide_char* line) { state.wide_lines.push_back(line); }
bool debugger_attached() { return ++state.debug_calls, state.debugger; }
std::int32_t current_thread_id() { return ++state.debug_calls, state.thread_id; }

module_handle own_module() { return &state; }

wide_string library_path_beside(module_handle module, wide_view name) {
  return (module == &state ? u"/own/" : u"/foreign/") + wide_string(name);
}

void restrict_library_search() {}

module_handle load_library(const wide_string& path) {
  state.loaded_path = path;
  return state.library;
}

void* library_symbol(module_handle, const char* name) {
  return std::string(name) == "Api" ? state.entry : nullptr;
}

void unload_library(module_handle) {
  ++state.unloaded;
  if (state.on_unload) state.on_unload();
}

bool cursor_position(screen_point& point) {
  point = state.cursor.value_or(point);
  return state.cursor.has_value();
}

}  // namespace platform
