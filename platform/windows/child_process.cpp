#include "platform/child_process.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <string_view>

#include "platform/windows/command_line.h"
#include "platform/windows/handle.h"

namespace platform {
namespace {

using std::chrono::milliseconds;

// The exit value of a killed child: what a signal would give elsewhere.
constexpr UINT killed_exit_value = 128 + 9;

constexpr DWORD pipe_size = 64 * 1024;

// How much is written at once. A child that reads at all takes this much before long.
constexpr std::size_t write_step = 4096;

DWORD wait_time(milliseconds timeout) {
  if (timeout == child_process::forever) return INFINITE;
  return static_cast<DWORD>(std::clamp<milliseconds::rep>(timeout.count(), 0, INFINITE - 1));
}

std::string system_message(DWORD error) {
  char text[256] = {};
  DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                error, 0, text, sizeof text, nullptr);
  while (length > 0 && (text[length - 1] == '\n' || text[length - 1] == '\r')) --length;
  return length > 0 ? std::string(text, length) : "error " + std::to_string(error);
}

// Only named pipes can be waited for with a limit, so our end is one of these; the child's end is
// one that any program can use.
struct pipe_ends {
  handle ours;
  handle childs;
};

bool make_pipe(pipe_ends& ends, DWORD our_access, DWORD childs_access) {
  static std::atomic<unsigned> count{0};
  const std::string name = R"(\\.\pipe\cfhost-child-)" + std::to_string(GetCurrentProcessId()) +
                           '-' + std::to_string(++count);
  ends.ours = handle(CreateNamedPipeA(
      name.c_str(), our_access | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
      PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, pipe_size, pipe_size, 0, nullptr));
  if (!ends.ours.valid()) return false;
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  ends.childs =
      handle(CreateFileA(name.c_str(), childs_access, 0, &inherited, OPEN_EXISTING, 0, nullptr));
  return ends.childs.valid();
}

std::int64_t ticks(const FILETIME& time) {
  return static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

struct transfer_result {
  std::size_t count = 0;
  DWORD error = ERROR_SUCCESS;
};

// Runs one ReadFile or WriteFile for at most `timeout`.
template <class Operation>
transfer_result transfer(const handle& end, milliseconds timeout, Operation operation) {
  const handle event(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  OVERLAPPED overlapped = {};
  overlapped.hEvent = event.get();
  if (operation(&overlapped) == 0 && GetLastError() != ERROR_IO_PENDING) return {0, GetLastError()};
  if (WaitForSingleObject(event.get(), wait_time(timeout)) != WAIT_OBJECT_0) {
    CancelIoEx(end.get(), &overlapped);
  }
  // Cancelled or not, the system may use the memory until this returns.
  DWORD count = 0;
  const bool done = GetOverlappedResult(end.get(), &overlapped, &count, TRUE) != 0;
  return {count, done ? ERROR_SUCCESS : GetLastError()};
}

class windows_child final : public child_process {
 public:
  windows_child(handle process, handle input, handle output)
      : process_(std::move(process)), input_(std::move(input)), output_(std::move(output)) {}

  ~windows_child() override {
    close_input();
    close_output();
    kill();
    (void)wait(forever);
  }

  bool write(const void* bytes, std::size_t size, milliseconds timeout) override {
    const auto* at = static_cast<const char*>(bytes);
    const char* const end = at + size;
    while (at != end) {
      const auto left = static_cast<std::size_t>(end - at);
      const auto step = static_cast<DWORD>(std::min(write_step, left));
      const transfer_result result = transfer(input_, timeout, [&](OVERLAPPED* overlapped) {
        return WriteFile(input_.get(), at, step, nullptr, overlapped);
      });
      if (result.error != ERROR_SUCCESS) return false;
      at += result.count;
    }
    return true;
  }

  void close_input() override { input_.close(); }

  std::optional<std::size_t> read(void* bytes, std::size_t size, milliseconds timeout) override {
    const auto room = static_cast<DWORD>(std::min<std::size_t>(size, MAXDWORD));
    const transfer_result result = transfer(output_, timeout, [&](OVERLAPPED* overlapped) {
      return ReadFile(output_.get(), bytes, room, nullptr, overlapped);
    });
    if (result.error == ERROR_OPERATION_ABORTED) return std::nullopt;
    return result.count;
  }

  void close_output() override { output_.close(); }

  std::optional<int> wait(milliseconds timeout) override {
    if (WaitForSingleObject(process_.get(), wait_time(timeout)) != WAIT_OBJECT_0) return {};
    DWORD value = 0;
    GetExitCodeProcess(process_.get(), &value);
    return static_cast<int>(value);
  }

  std::chrono::microseconds cpu_time() const override {
    FILETIME unused = {}, kernel = {}, user = {};
    if (WaitForSingleObject(process_.get(), 0) != WAIT_OBJECT_0 ||
        GetProcessTimes(process_.get(), &unused, &unused, &kernel, &user) == 0) {
      return {};
    }
    // In units of 100 ns.
    return std::chrono::microseconds((ticks(kernel) + ticks(user)) / 10);
  }

  std::int64_t process_id() const override { return GetProcessId(process_.get()); }

  void kill() override { TerminateProcess(process_.get(), killed_exit_value); }

 private:
  const handle process_;
  handle input_;
  handle output_;
};

// The only handles that a child inherits: another child that is started at the same time must not
// keep its pipes open.
class inherited_handles {
 public:
  inherited_handles(const handle& input, const handle& output) {
    STARTUPINFOA& info = startup.StartupInfo;
    info.cb = sizeof startup;
    info.dwFlags = STARTF_USESTDHANDLES;
    info.hStdInput = input.get();
    info.hStdOutput = output.get();
    HANDLE error = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetStdHandle(STD_ERROR_HANDLE), GetCurrentProcess(),
                    &error, 0, TRUE, DUPLICATE_SAME_ACCESS);
    error_ = handle(error);
    info.hStdError = error;
    list_ = {input.get(), output.get()};
    if (error_.valid()) list_.push_back(error);
    fill_attributes();
  }
  ~inherited_handles() { DeleteProcThreadAttributeList(startup.lpAttributeList); }
  inherited_handles(const inherited_handles&) = delete;
  inherited_handles& operator=(const inherited_handles&) = delete;

  STARTUPINFOEXA startup = {};

 private:
  void fill_attributes() {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    memory_.resize(size);
    startup.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    InitializeProcThreadAttributeList(startup.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(startup.lpAttributeList, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST,
                              list_.data(), list_.size() * sizeof(HANDLE), nullptr, nullptr);
  }

  handle error_;
  std::vector<HANDLE> list_;
  std::vector<unsigned char> memory_;
};

// Programs may be named with their suffix or, as on other systems, without it.
std::string program_path(const std::string& program) {
  constexpr std::string_view suffix = ".exe";
  const bool complete = program.size() >= suffix.size() &&
                        program.compare(program.size() - suffix.size(), suffix.size(), suffix) == 0;
  return complete ? program : program + std::string(suffix);
}

}  // namespace

std::unique_ptr<child_process> child_process::start(const std::string& program,
                                                    const std::vector<std::string>& arguments,
                                                    std::string& error, bare_scripts) {
  pipe_ends input;
  pipe_ends output;
  if (!make_pipe(input, PIPE_ACCESS_OUTBOUND, GENERIC_READ) ||
      !make_pipe(output, PIPE_ACCESS_INBOUND, GENERIC_WRITE)) {
    error = "can't make a pipe: " + system_message(GetLastError());
    return nullptr;
  }
  inherited_handles inherited(input.childs, output.childs);
  const std::string path = program_path(program);
  std::string command_line = join_arguments(path, arguments);
  PROCESS_INFORMATION made = {};
  if (CreateProcessA(path.c_str(), command_line.data(), nullptr, nullptr, TRUE,
                     EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &inherited.startup.StartupInfo,
                     &made) == 0) {
    error = "can't start " + path + ": " + system_message(GetLastError());
    return nullptr;
  }
  const handle thread(made.hThread);
  return std::make_unique<windows_child>(handle(made.hProcess), std::move(input.ours),
                                         std::move(output.ours));
}

// The system ends a process with the code of the unhandled exception, an error of the highest
// severity.
std::string crash_of(int exit_value) {
  constexpr auto severity = 0xC0000000;
  const auto code = static_cast<DWORD>(exit_value);
  if ((code & severity) != severity) return {};
  char text[64];
  const char* const name = code == STATUS_ACCESS_VIOLATION ? " (access violation)"
                           : code == STATUS_STACK_OVERFLOW ? " (stack overflow)"
                                                           : "";
  std::snprintf(text, sizeof text, "exception 0x%08lX%s", code, name);
  return text;
}

void crash_quietly() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  SetUnhandledExceptionFilter([](EXCEPTION_POINTERS* what) -> LONG {
    TerminateProcess(GetCurrentProcess(), what->ExceptionRecord->ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
  });
}

}  // namespace platform
