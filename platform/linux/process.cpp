#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>

#include "platform/platform.h"

namespace platform {
namespace {

using clock = std::chrono::steady_clock;

// A pipe holds as much. Each read costs a call and wakes the writer.
constexpr std::size_t input_buffer_size = std::size_t{64} * 1024;

void make_waiting(int fd) {
  const int flags = fcntl(fd, F_GETFL);
  if (flags >= 0) fcntl(fd, F_SETFL, flags & ~O_NONBLOCK);
}

int milliseconds_until(clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - clock::now());
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
}

// What is known to be left of a page of a pipe.
struct pipe_room {
  int fd = -1;
  std::size_t left = 0;
};

// Whether a page of the pipe takes several writes, as it does unless they are packets.
bool joins_writes(int fd) {
  return fcntl(fd, F_GETPIPE_SZ) > 0 && (fcntl(fd, F_GETFL) & O_DIRECT) == 0;
}

// A pipe is ready when a page of it is free, PIPE_BUF bytes, more than any frame. The input is
// watched for its end alone; data in it is the main thread's.
bool wait_until_ready(int output, std::chrono::milliseconds patience) {
  pollfd streams[] = {{output, POLLOUT, 0}, {STDIN_FILENO, POLLRDHUP, 0}};
  int timeout = -1;
  clock::time_point deadline;
  for (;;) {
    const int ready = poll(streams, 2, timeout);
    if (ready < 0 && errno != EINTR) return true;
    if (ready > 0 && streams[0].revents != 0) return true;
    if (ready > 0 && streams[1].revents != 0) {
      streams[1].fd = -1;  // it has said what it had to say
      deadline = clock::now() + patience;
      timeout = 0;
    }
    if (timeout < 0) continue;
    timeout = milliseconds_until(deadline);
    if (timeout == 0) return false;
  }
}

struct {
  int exit_value;
  clock::time_point deadline;
} end_of_process;

// A library may still have timers of its own that raise the signal.
extern "C" void abandon_exit(int) {
  if (clock::now() >= end_of_process.deadline) leave_now(end_of_process.exit_value);
}

}  // namespace

// The other way would be to clear the dumpable flag of the process. That also keeps debuggers away,
// and whoever of the same user looks under /proc who the process is, as an agent does that wants to
// know who has connected. So files are forbidden by the limit, and since a program that takes
// dumps through a pipe is given them whatever the limit says, the filter of the process leaves
// nothing of its memory in one.
void forbid_memory_dumps() {
  const rlimit none = {0, 0};
  setrlimit(RLIMIT_CORE, &none);
  const int filter = open("/proc/self/coredump_filter", O_WRONLY | O_CLOEXEC);
  if (filter < 0) return;
  (void)!write(filter, "0", 1);
  close(filter);
}

// Opening takes the lowest free number, so it goes upwards from 0.
void occupy_standard_streams() {
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd) {
    if (fcntl(fd, F_GETFD) == -1 && errno == EBADF) (void)open("/dev/null", O_RDWR);
  }
}

// Streams carry raw bytes here anyway. The runtime's default answers to a closed reader and to a
// file that is full, ending the process by a signal, would let the output side decide over the
// host's life.
void prepare_standard_streams() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  make_waiting(STDOUT_FILENO);
  make_waiting(STDIN_FILENO);
  static char input_buffer[input_buffer_size];
  std::setvbuf(stdin, input_buffer, _IOFBF, sizeof input_buffer);
}

bool wait_for_input(std::FILE* input) {
  pollfd stream = {fileno(input), POLLIN, 0};
  return poll(&stream, 1, -1) > 0 || errno == EINTR;
}

// While less than a page has been written since a pipe was ready, its page isn't full, and nothing
// need be asked.
bool wait_for_output(std::FILE* output, std::size_t size, std::chrono::milliseconds patience) {
  static pipe_room room;
  const int fd = fileno(output);
  if (room.fd == fd && size <= room.left) {
    room.left -= size;
    return true;
  }
  room = {};
  if (!wait_until_ready(fd, patience)) return false;
  if (size <= PIPE_BUF && joins_writes(fd)) room = {fd, PIPE_BUF - size};
  return true;
}

// A timer of the system, since a thread to keep the time may not be had. What a library did to the
// signal counts no more.
void end_process(int exit_value, std::chrono::milliseconds limit) {
  end_of_process = {exit_value, clock::now() + limit};
  std::signal(SIGALRM, abandon_exit);
  sigset_t alarm;
  sigemptyset(&alarm);
  sigaddset(&alarm, SIGALRM);
  pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
  const auto microseconds = std::chrono::microseconds(limit).count();
  const itimerval timer = {{}, {microseconds / 1'000'000, microseconds % 1'000'000}};
  setitimer(ITIMER_REAL, &timer, nullptr);
  std::exit(exit_value);
}

// Not _exit, in whose place the thread sanitizer flushes the streams first.
void leave_now(int exit_value) { std::_Exit(exit_value); }

}  // namespace platform
