#include "platform/debug_viewer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "platform/linux/debug_address.h"
#include "platform/linux/descriptor.h"

namespace platform {
namespace {

// Several times the longest line that a host writes.
constexpr std::size_t max_line = 4096;

constexpr mode_t beyond_owner = S_IXUSR | S_IRWXG | S_IRWXO;

std::string because(const std::string& what) { return what + ": " + std::strerror(errno); }

// The handler of the signals that end the viewer writes here; the waiting `receive` reads.
int end_pipe[2] = {-1, -1};

void request_end(int) {
  const int saved = errno;
  (void)!write(end_pipe[1], "", 1);
  errno = saved;
}

// Without SA_RESTART, so that a write to a stuck terminal is interrupted too.
bool watch_signals(std::string& error) {
  if (pipe2(end_pipe, O_CLOEXEC | O_NONBLOCK) != 0) {
    error = because("can't make a pipe");
    return false;
  }
  struct sigaction action {};
  action.sa_handler = request_end;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaction(number, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
  return true;
}

class linux_viewer final : public debug_viewer {
 public:
  linux_viewer() : address_(debug_address()) {}

  // By now the path may hold another viewer's socket.
  ~linux_viewer() override {
    struct stat now {};
    const bool ours = bound_ && lstat(address_.sun_path, &now) == 0 && now.st_dev == file_.st_dev &&
                      now.st_ino == file_.st_ino;
    if (ours) unlink(address_.sun_path);
  }
  linux_viewer(const linux_viewer&) = delete;
  linux_viewer& operator=(const linux_viewer&) = delete;

  bool start(std::string& error) {
    const descriptor folder = open_folder(error);
    return folder.valid() && watch_signals(error) && make_place(error) && listen(error);
  }

  bool receive(std::string& line) override {
    pollfd sources[] = {{socket_.get(), POLLIN, 0}, {end_pipe[0], POLLIN, 0}};
    char text[max_line];
    for (;;) {
      if (poll(sources, 2, -1) < 0 && errno != EINTR) return false;
      if (sources[1].revents != 0) return false;
      const ssize_t length = recv(socket_.get(), text, sizeof text, MSG_DONTWAIT);
      if (length >= 0) {
        line.assign(text, static_cast<std::size_t>(length));
        return true;
      }
      if (errno != EAGAIN && errno != EINTR) return false;
    }
  }

 private:
  // Opens the folder and locks it until it is closed, so that two viewers that start at once don't
  // take each other's socket for a leftover.
  descriptor open_folder(std::string& error) const {
    const std::string folder = debug_folder(address_);
    descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.valid()) {
      error = because("can't open the runtime folder " + folder);
      if (errno == ENOENT) {
        error += "\nA login session makes it; otherwise: mkdir -p -m 700 " + folder;
      }
      return {};
    }
    if (!is_own_folder(folder)) {
      error =
          "others can write to the folder " + folder + "\nMake it yours alone: chmod 700 " + folder;
    } else if (flock(opened.get(), LOCK_EX | LOCK_NB) == 0) {
      return opened;
    } else {
      error = because("can't lock " + folder) + "\nIs another viewer starting? Try again.";
    }
    return {};
  }

  // Removes the socket that a dead viewer left behind, and nobody else's file.
  bool make_place(std::string& error) {
    socket_ = descriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    struct stat present {};
    if (lstat(address_.sun_path, &present) != 0) return true;
    const std::string path = address_.sun_path;
    if (!S_ISSOCK(present.st_mode)) {
      error = path + " is in the way and no socket\nRemove it and start again.";
      return false;
    }
    const descriptor probe(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    if (connect(probe.get(), name(), sizeof address_) == 0 || errno != ECONNREFUSED) {
      error = "another viewer listens at " + path + "\nEnd it first.";
      return false;
    }
    unlink(address_.sun_path);
    return true;
  }

  // Unlike a later change of the mode, the mask leaves no moment at which others could write.
  bool listen(std::string& error) {
    const mode_t mask = umask(beyond_owner);
    bound_ =
        bind(socket_.get(), name(), sizeof address_) == 0 && lstat(address_.sun_path, &file_) == 0;
    if (!bound_) error = because(std::string("can't make the socket ") + address_.sun_path);
    umask(mask);
    return bound_;
  }

  const sockaddr* name() const { return reinterpret_cast<const sockaddr*>(&address_); }

  sockaddr_un address_;
  struct stat file_ {};
  descriptor socket_;
  bool bound_ = false;
};

}  // namespace

std::unique_ptr<debug_viewer> debug_viewer::open(std::string& error) {
  auto viewer = std::make_unique<linux_viewer>();
  if (!viewer->start(error)) return nullptr;
  return viewer;
}

}  // namespace platform
