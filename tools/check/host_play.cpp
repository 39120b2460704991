#include "tools/check/host_play.h"

#include <atomic>
#include <thread>

#include "tools/check/notified_object.h"
#include "tools/check/watched_message.h"
#include "tools/load_examination.h"

namespace {

constexpr cfName interface_of_nobody{u"cfcheck.Nobody"};

// How often the parent is told that the child is alive.
constexpr std::chrono::milliseconds wait_step{100};

class observer final : public iCfClientObs {
 public:
  explicit observer(account& told) : told_(told) {}

  void* deletingDestructor(std::uint32_t) override {
    told_.add(severity::warning, "observer-destroyed",
              "the library destroys the observer, which is the host's",
              "The host ignores that. The observer lives as long as the library.");
    return this;
  }

  std::int32_t notify(iCfMsg* object) override {
    if (closed_) return 0;
    ++count_;
    examine_notified_object(object, told_);
    return 0;
  }

  void close() { closed_ = true; }
  int count() const { return count_; }

 private:
  account& told_;
  std::atomic<bool> closed_{false};
  std::atomic<int> count_{0};
};

// Never destroyed: threads of the library may use both until the process ends.
struct stage {
  explicit stage(account& told) : watcher(told), messages(make_watched_messages(told)) {}

  observer watcher;
  std::vector<std::unique_ptr<watched_message>> messages;
};

void serve(iCfClient& client, stage& set, std::chrono::milliseconds wait, account& told) {
  told.step("addObserver");
  client.addObserver(&set.watcher);
  for (const auto& message : set.messages) {
    told.step(std::string("post of ") + message->name());
    client.post(message->object());
  }
  const auto end = std::chrono::steady_clock::now() + wait;
  while (std::chrono::steady_clock::now() < end) {
    told.step("the wait for notifications");
    std::this_thread::sleep_for(wait_step);
  }
}

void look_for_foreign_names(cfApi& api, account& told) {
  told.step("getInterface");
  if (api.getInterface(interface_of_nobody) == nullptr) return;
  told.add(severity::warning, "interface-for-any-name",
           "getInterface gives something for a name that nobody has",
           "Compare the whole name: a later host may ask for another interface.");
}

void play(const opened_library& library, std::chrono::milliseconds wait, account& told) {
  look_for_foreign_names(*library.api, told);
  static stage& set = *new stage(told);
  serve(*library.client, set, wait, told);
  set.watcher.close();
  if (set.watcher.count() == 0) {
    told.add(severity::note, "no-notification",
             "it notified of nothing within " + std::to_string(wait.count()) + " ms",
             "Wait longer with --wait, if its store is slow.");
  }
  unload(library, told);
  for (const auto& message : set.messages) message->judge();
}

}  // namespace

void play_host(const std::string& library, std::chrono::milliseconds wait, account& told) {
  const opened_library opened = open_library(library, told);
  if (opened.client != nullptr) {
    play(opened, wait, told);
  } else {
    unload(opened, told);
  }
  end_examination(told);
}
