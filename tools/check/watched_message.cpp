#include "tools/check/watched_message.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include "messages/commands.h"
#include "messages/library/byte_sink.h"
#include "messages/website.h"

namespace {

constexpr unsigned char guard_byte = 0xC5;
constexpr std::size_t guard_size = 64;

constexpr char release_once[] =
    "Call release once for each message that is posted, when its form has been read.";

// What the library does with one message. Any thread may call.
class usage {
 public:
  usage(const char* name, account& told) : name_(name), told_(told) {}

  const char* name() const { return name_; }
  bool was_read_into() const { return read_into_; }

  // Every operation except those on the count.
  void use(const char* operation) {
    if (references_ > 0) return;
    fault("used-after-release",
          std::string(operation) + " of " + name_ + " is called after its release",
          "The host frees a message when it is released: do that last.");
  }

  void read_into() {
    use("read");
    read_into_ = true;
  }

  std::int32_t add() {
    use("addRef");
    return ++references_;
  }

  std::int32_t drop(bool frees) {
    const std::int32_t left = --references_;
    if (left < 0) {
      fault("released-twice", std::string(name_) + " is released more than once", release_once);
    }
    if (left == 0 && !frees) {
      fault("never-released",
            std::string("the last reference on ") + name_ + " goes by decRef, which frees nothing",
            release_once);
    }
    return left;
  }

  void destroyed() {
    references_ = 0;
    fault("destroyed-by-library",
          std::string("the library destroys ") + name_ + ", which is the host's", release_once);
  }

  void judge_release() {
    const std::int32_t left = references_;
    if (left > 0) {
      fault("never-released",
            std::string(name_) + " is never released, so the host's memory grows: " +
                std::to_string(left) + (left == 1 ? " reference is left" : " references are left"),
            release_once);
    }
  }

  void changed() {
    fault("message-changed", std::string("the library has written into, or beside, ") + name_,
          "Messages are the host's, and other threads may read them. Change a copy.");
  }

 private:
  void fault(const char* id, const std::string& text, const std::string& advice) {
    told_.add(severity::fault, id, text, advice);
  }

  const char* const name_;
  account& told_;
  std::atomic<std::int32_t> references_{1};
  std::atomic<bool> read_into_{false};
};

// The message's memory between two guards that nobody has a reason to touch. The object lies at a
// fixed distance from the pointer to its `usage`.
template <class Message>
struct guarded_memory {
  usage* use;
  unsigned char before[guard_size];
  alignas(Message) unsigned char object[sizeof(Message)];
  unsigned char after[guard_size];
};

// The table that replaces the message's own. Its slots are those of docs/messages.md. On every
// system a member function is called like a function whose first argument is the object.
template <class Message>
struct watching_table {
  // In front of a table compilers keep facts about the class. Nobody asks for them here.
  void* class_facts[2] = {};
  void* (*deletingDestructor)(Message*, std::uint32_t) = [](Message* m, std::uint32_t) {
    of(m).destroyed();
    return static_cast<void*>(m);
  };
  std::int32_t (*release)(Message*) = [](Message* m) { return of(m).drop(true); };
  void* (*query)(Message*, const cfName&) = [](Message* m, const cfName& n) {
    of(m).use("query");
    return m->Message::query(n);
  };
  cfName* (*nameInto)(Message*, cfName*) = [](Message* m, cfName* result) {
    of(m).use("name");
    return m->Message::nameInto(result);
  };
  bool (*write)(Message*, cfOStream&) = [](Message* m, cfOStream& s) {
    of(m).use("write");
    return m->Message::write(s);
  };
  bool (*read)(Message*, cfIStream&) = [](Message* m, cfIStream& s) {
    of(m).read_into();
    return m->Message::read(s);
  };
  std::int32_t (*spare)(Message*) = [](Message* m) {
    of(m).use("spare");
    return std::int32_t{0};
  };
  std::int32_t (*addRef)(Message*) = [](Message* m) { return of(m).add(); };
  std::int32_t (*decRef)(Message*) = [](Message* m) { return of(m).drop(false); };

  static usage& of(Message* message) {
    auto* const bytes = reinterpret_cast<unsigned char*>(message);
    return *reinterpret_cast<guarded_memory<Message>*>(bytes -
                                                       offsetof(guarded_memory<Message>, object))
                ->use;
  }
};

template <class Message>
class watched final : public watched_message {
 public:
  template <class... Arguments>
  watched(const char* name, account& told, Arguments... arguments) : usage_(name, told) {
    memory_.use = &usage_;
    std::fill(std::begin(memory_.before), std::end(memory_.before), guard_byte);
    std::fill(std::begin(memory_.after), std::end(memory_.after), guard_byte);
    message_ = new (memory_.object) Message(arguments...);
    message_->addRef();
  }

  // For filling in the message before it is posted.
  Message& message() { return *message_; }

  iCfMsg* object() override {
    static const watching_table<Message> table;
    form_ = form();
    const void* const first_slot = &table.deletingDestructor;
    std::memcpy(memory_.object, &first_slot, sizeof first_slot);
    std::memcpy(bytes_, memory_.object, sizeof bytes_);
    return message_;
  }

  const char* name() const override { return usage_.name(); }

  void judge() override {
    usage_.judge_release();
    const auto untouched = [](unsigned char byte) { return byte == guard_byte; };
    const bool is_same =
        std::all_of(std::begin(memory_.before), std::end(memory_.before), untouched) &&
        std::all_of(std::begin(memory_.after), std::end(memory_.after), untouched) &&
        (usage_.was_read_into() ||
         (std::memcmp(bytes_, memory_.object, sizeof bytes_) == 0 && form() == form_));
    if (!is_same) usage_.changed();
  }

 private:
  byte_list form() {
    byte_sink sink;
    cfOStream stream = sink.stream();
    message_->Message::write(stream);
    return sink.take();
  }

  usage usage_;
  guarded_memory<Message> memory_;
  Message* message_;
  byte_list form_;
  unsigned char bytes_[sizeof(Message)];
};

void set_input(propsW_t& input, const wide_char* name, const wide_char* type) {
  for (const wide_char* const empty :
       {u"value", u"id", u"readonly", u"context", u"form-context", u"cf-schema", u"cf-value"}) {
    input.set(empty, u"", true);
  }
  input.set(u"name", name, true);
  input.set(u"type", type, true);
}

void fill_page(CfMsgWebsite& page, const wide_char* user_state) {
  page.sender = u"cfcheck";
  page.props.set(u"source", u"https://example.com/login", true);
  page.props.set(u"title", u"cfcheck", true);
  page.props.set(u"user-state", user_state, true);
  set_input(page.inputs.emplace_back(), u"user", u"text");
  set_input(page.inputs.emplace_back(), u"password", u"password");
}

}  // namespace

std::vector<std::unique_ptr<watched_message>> make_watched_messages(account& told) {
  auto page = std::make_unique<watched<CfMsgWebsite>>("CfMsgWebsite", told);
  fill_page(page->message(), u"load");
  auto drop_down = std::make_unique<watched<CfMsgWebsite>>("CfMsgWebsite (drop-down)", told);
  fill_page(drop_down->message(), u"drop-down");
  auto unlock = std::make_unique<watched<CfMsgUnLockDb>>("CfMsgUnLockDb", told);
  unlock->message().pos = CfWndPos(position_stored, 0, 0);

  std::vector<std::unique_ptr<watched_message>> messages;
  messages.push_back(std::make_unique<watched<CfMsgGetSettings>>("CfMsgGetSettings", told));
  messages.push_back(std::move(unlock));
  messages.push_back(std::move(page));
  messages.push_back(std::move(drop_down));
  messages.push_back(
      std::make_unique<watched<CfMsgRunConsole>>("CfMsgRunConsole", told, console_open));
  messages.push_back(std::make_unique<watched<CfMsgCfDbCmd>>("CfMsgCfDbCmd", told));
  return messages;
}
