#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>

#include "platform/platform.h"

namespace platform {
namespace {

static_assert(_O_BINARY == 0x8000);

struct {
  int exit_value;
  DWORD limit;  // in milliseconds
  HANDLE started;
} end_later;

DWORD WINAPI abandon_exit(void*) {
  SetEvent(end_later.started);
  Sleep(end_later.limit);
  leave_now(end_later.exit_value);
}

}  // namespace

// The mode turns off error reporting, and the dumps that it stores, for unhandled exceptions. A
// debugger can still be attached.
void forbid_memory_dumps() { SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX); }

// The runtime gives each opened file the lowest free number, so the loop goes upwards from 0.
void occupy_standard_streams() {
  for (int fd = 0; fd <= 2; ++fd) {
    if (_get_osfhandle(fd) == -1) (void)_open("NUL", _O_RDWR);
  }
}

// Here a reader that has gone away makes a write fail anyway.
void prepare_standard_streams() {
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stdin), _O_BINARY);
}

bool wait_for_input(std::FILE*) { return false; }

// The system doesn't tell enough about a pipe: the free room that it reports leaves out what a
// reader is waiting for, and while one thread reads, every query of the input waits for that read.
bool wait_for_output(std::FILE*, std::size_t, input_question, std::chrono::milliseconds) {
  return true;
}

// Only wait_for_output would have a use for it.
std::size_t read_ahead(std::FILE*) { return 0; }

// The system ends the remaining threads before it tells the libraries that the process ends, and a
// library may then wait for a lock that went with its thread. So the libraries aren't told.
void end_process(int exit_value, std::chrono::milliseconds limit) {
  end_later = {exit_value, static_cast<DWORD>(limit.count()),
               CreateEventA(nullptr, TRUE, FALSE, nullptr)};
  // A thread can't start while a library is being told of its end.
  if (CreateThread(nullptr, 0, abandon_exit, nullptr, 0, nullptr) != nullptr) {
    WaitForSingleObject(end_later.started, end_later.limit);
  }
  _cexit();
  leave_now(exit_value);
}

// Threads can't be cancelled here.
int forbid_cancellation() { return 0; }
void allow_cancellation(int) {}

// Even the runtime's quick ways out tell each library of the end, under a lock of the loader's that
// a stuck thread may hold.
void leave_now(int exit_value) {
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exit_value));
  __builtin_unreachable();
}

}  // namespace platform
