// Everything that differs between operating systems, as the host needs it. Each system has one
// implementation in a folder of its own, chosen by the build; no other code tests for a system.
//
// Unless said otherwise a function may be called from any thread, and never throws.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "platform/wide.h"

namespace platform {

// --- Standard streams and process end ------------------------------------------------------------

// Keeps the memory of this process, which holds passwords, out of what the system stores or sends
// when a process crashes. Called first.
void forbid_memory_dumps();

// Makes sure that no file opened later can take the place of a standard stream that the process was
// started without. Called once, before anything is opened.
void occupy_standard_streams();

// Makes standard output and standard input binary and blocking, and turns a reader that has gone
// away into a failed write instead of the end of the process. Called once, before any transfer.
void prepare_standard_streams();

// Called when a read has failed with EAGAIN: waits until there is something to read, or the input
// has ended. A program that shares the input, such as one that the library has started, may have
// made it non-blocking. False where that can't happen.
bool wait_for_input(std::FILE* input);

// How many bytes of `input` have been read but not yet taken from its stream. For the thread that
// reads it.
std::size_t read_ahead(std::FILE* input);

// Whether the program still has to serve something that arrived, given that `unread` bytes of
// standard input are unread. May be called on any thread.
using input_question = bool (*)(std::size_t unread);

// Waits until `output` can take `size` bytes, which are then written to it, without blocking, or
// until its reader has gone and the write fails at once. False if nobody is left to read: standard
// input has ended, nothing of it remains to be served, and `output` has taken nothing for `timeout`
// since. Always true at once on a system that can't tell. One thread at a time.
bool wait_for_output(std::FILE* output, std::size_t size, input_question has_to_serve,
                     std::chrono::milliseconds timeout);

// Ends the process as a return from main does, with the exit actions, but at once if these take
// longer than `limit`, whatever a library did to signals. Threads that a library still has after
// them can't hold it up.
[[noreturn]] void end_process(int exit_value, std::chrono::milliseconds limit);

// Keeps the calling thread from being cancelled until `allow_cancellation` is given the result: a
// thread cancelled inside the host's code would take the process with it.
int forbid_cancellation();
void allow_cancellation(int as_before);

// Ends the process at once: no exit action runs and no stream is flushed.
[[noreturn]] void leave_now(int exit_value);

// --- Configuration -------------------------------------------------------------------------------

// Where one value of a system-wide configuration file stands.
struct config_key {
  wide_view folder;   // below the folder for configuration that all users share
  wide_view file;     // in INI form
  wide_view section;  // compared without regard to case, like `key`
  wide_view key;
};

// Copies the value into `out`, cut to `capacity` - 1 units, and terminates it. Returns the units
// copied: 0 if there is no such file, section or key, or if it can't be read; `capacity` - 1 if the
// value was cut. Requires `capacity` of at least 1.
std::size_t config_value(const config_key& key, wide_char* out, std::size_t capacity);

// The decimal integer at the start of a terminated text. Leading blanks and a sign are accepted,
// the first other character ends it, and no digits give 0. Saturates at the limits of 32 bits.
std::int32_t leading_integer(const wide_char* text);

// --- Diagnostics ---------------------------------------------------------------------------------

// Hands one terminated line to whoever watches the debugger output, or drops it. Never blocks,
// unless the system makes its programs wait for a debugger.
void write_debug_line(const char* line);
void write_debug_line(const wide_char* line);

bool debugger_attached();

// Identifies the calling thread in diagnostics, the way the system's own tools show it.
std::int32_t current_thread_id();

// --- Modules -------------------------------------------------------------------------------------

using module_handle = void*;

// The executable of this process. Never null; not to be unloaded.
module_handle own_module();

// Full path of the library `name` (without the system's suffix) in the folder that holds `module`.
// The text is opaque: meant for load_library on the same system and for nothing else. Empty when
// the folder can't be found out.
wide_string library_path_beside(module_handle module, wide_view name);

// From here on libraries that are loaded by name alone come from the folder of the executable and
// from the system's, never from the working directory or a search path. Called before any library
// is loaded. Does nothing where names are never looked for there.
void restrict_library_search();

// Loads the library at exactly this path, without any search. Where the system lets that be chosen,
// the libraries that it needs come from its own folder or the system's. Null on failure.
module_handle load_library(const wide_string& path);

// The address of an exported function, or null.
void* library_symbol(module_handle module, const char* name);

void unload_library(module_handle module);

// --- Screen --------------------------------------------------------------------------------------

struct screen_point {
  std::int32_t x = 0;
  std::int32_t y = 0;
};

// Where the mouse cursor stands, in pixels. False, and `point` untouched, where there is no screen
// or it doesn't answer. Only the main thread may ask.
bool cursor_position(screen_point& point);

// --- Random numbers ------------------------------------------------------------------------------

// The next number from one sequence for all threads, in a range of at least 0 to 32767. The
// sequence isn't seeded: each process goes through the same one.
int random_number();

// --- Text conversion -----------------------------------------------------------------------------

// UTF-8 to UTF-16 and back. Malformed text is no failure. On the way in, each maximal subpart of an
// ill-formed sequence becomes U+FFFD (Unicode 3.9), except where the system's own conversion does
// it differently. A surrogate coded in three bytes becomes that code unit on every system, so that
// a pair coded one by one joins into the character it means. On the way out, a lone surrogate
// becomes U+FFFD.
//
// `out` must have room for the longest possible result: `length` units for the first, 3 * `length`
// bytes for the second. No terminator is read or written. The result is the number of elements
// written; 0 for a non-empty text means that the system refused the conversion.
std::size_t utf8_to_utf16(const char* text, std::uint32_t length, wide_char* out);
std::size_t utf16_to_utf8(const wide_char* text, std::uint32_t length, char* out);

}  // namespace platform
