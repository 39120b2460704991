// The protocol of the system's debugger output: one line in shared memory, an event that says it
// may be written, and another that says it can be read.
#include "platform/debug_viewer.h"

#include <windows.h>

#include <cstring>
#include <string_view>

#include "platform/windows/handle.h"

namespace platform {
namespace {

struct shared_line {
  DWORD process_id;
  char text[4096 - sizeof(DWORD)];
};

// All kinds of programs write there. A host's line starts with a thread's number in brackets.
constexpr std::string_view host_tag = "] [ cf    ] ";

bool is_host_line(std::string_view line) {
  const std::size_t tag = line.find(host_tag);
  return !line.empty() && line.front() == '[' && tag != std::string_view::npos &&
         line.substr(1, tag - 1).find_first_not_of(" 0123456789") == std::string_view::npos;
}

// Set by a request to end the process; the waiting `receive` watches it.
HANDLE end_event = nullptr;

// A second request is left to the system.
BOOL WINAPI request_end(DWORD) {
  const bool first = WaitForSingleObject(end_event, 0) == WAIT_TIMEOUT;
  SetEvent(end_event);
  return first ? TRUE : FALSE;
}

handle make_event(const char* name) { return handle(CreateEventA(nullptr, FALSE, FALSE, name)); }

class windows_viewer final : public debug_viewer {
 public:
  ~windows_viewer() override {
    if (line_ != nullptr) UnmapViewOfFile(line_);
  }

  bool start(std::string& error) {
    memory_ = handle(CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                        sizeof(shared_line), "DBWIN_BUFFER"));
    if (GetLastError() == ERROR_ALREADY_EXISTS) {
      error = "another viewer of the debugger output is there\nEnd it first.";
      return false;
    }
    writable_ = make_event("DBWIN_BUFFER_READY");
    readable_ = make_event("DBWIN_DATA_READY");
    line_ = static_cast<const shared_line*>(
        MapViewOfFile(memory_.get(), FILE_MAP_READ, 0, 0, sizeof(shared_line)));
    end_event = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    if (line_ == nullptr || !writable_.valid() || !readable_.valid() || end_event == nullptr) {
      error = "the system refuses its debugger output: error " + std::to_string(GetLastError());
      return false;
    }
    SetConsoleCtrlHandler(request_end, TRUE);
    SetEvent(writable_.get());
    return true;
  }

  bool receive(std::string& line) override {
    const HANDLE sources[] = {end_event, readable_.get()};
    do {
      if (WaitForMultipleObjects(2, sources, FALSE, INFINITE) != WAIT_OBJECT_0 + 1) return false;
      line.assign(line_->text, strnlen(line_->text, sizeof line_->text));
      SetEvent(writable_.get());
    } while (!is_host_line(line));
    return true;
  }

 private:
  handle memory_;
  handle writable_;
  handle readable_;
  const shared_line* line_ = nullptr;
};

}  // namespace

std::unique_ptr<debug_viewer> debug_viewer::open(std::string& error) {
  auto viewer = std::make_unique<windows_viewer>();
  if (!viewer->start(error)) return nullptr;
  return viewer;
}

}  // namespace platform
