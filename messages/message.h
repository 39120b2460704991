// Base of everything that crosses the client library: reference-counted objects that answer to type
// names and can write themselves to, and read themselves from, a flat payload.
//
// The library calls these objects through their virtual table, so the order of the virtual
// functions is part of the interface, and docs/messages.md lists their slots. A message is filled
// by one thread before it is handed over and not changed afterwards; only its count may be used by
// several threads.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

#include "messages/deleting_destructor.h"
#include "messages/name.h"
#include "messages/streams.h"

class iCfMsg {
 public:
  static constexpr cfName type_name{u"iCfMsg"};

  iCfMsg() = default;
  iCfMsg(const iCfMsg&) = delete;
  iCfMsg& operator=(const iCfMsg&) = delete;

  // Destroys the object, and frees its memory if `flags` has free_memory. Called by `release`.
  virtual void* deletingDestructor(std::uint32_t flags) = 0;

  // Drops one reference, and frees the object with the last one. Returns the count that is left.
  virtual std::int32_t release() = 0;

  // The object itself if its class or one of its bases has this name, else null.
  virtual void* query(const cfName& n);

  // Stores the class's name and returns `result`. Compilers disagree on how to call a function that
  // returns a class.
  virtual cfName* nameInto(cfName* result) const;
  cfName name() const {
    cfName result = type_name;
    nameInto(&result);
    return result;
  }

  // Append the whole form to the stream, or fill the object from one. Both return the stream's
  // `ok`, or false, without touching the stream, for a class that has no form. `read` goes through
  // all fields, whatever fails on the way.
  virtual bool write(cfOStream& s);
  virtual bool read(cfIStream& s);

  // Always 0. Keeps its place in the table for the client library.
  virtual std::int32_t spare();

  // Take or drop a reference, and return the new count; a new object has none. decRef never frees.
  virtual std::int32_t addRef();
  virtual std::int32_t decRef();

 protected:
  ~iCfMsg() = default;

 private:
  friend struct message_layout;

  std::atomic<std::int32_t> refs{0};
  // Without this, some compilers would put the first field of a derived class here.
  [[maybe_unused]] std::uint32_t reserved_ = 0;
};

// Base of the messages about a page or the store. Abstract.
class CfMsgNpcomm : public iCfMsg {
 public:
  static constexpr cfName type_name{u"msg::CfMsgNpcomm"};

  std::uint32_t npTag = 0;              // on the wire; never set on what the host sends
  std::uint32_t npAux = 0;              // not on the wire
  std::uint64_t npCookie = UINT64_MAX;  // not on the wire

  void* query(const cfName& n) override;

 protected:
  CfMsgNpcomm() = default;
  ~CfMsgNpcomm() = default;
};

// The base of a concrete message, with what they all have in common. `Class` has a `type_name`;
// `Base` is iCfMsg or CfMsgNpcomm.
template <class Class, class Base>
class message_of : public implements<Class, Base> {
 public:
  using implements<Class, Base>::implements;

  std::int32_t release() override {
    const std::int32_t left = this->decRef();
    if (left <= 0) this->deletingDestructor(free_memory);
    return left;
  }

  void* query(const cfName& n) override { return n == Class::type_name ? this : Base::query(n); }

  cfName* nameInto(cfName* result) const override {
    *result = Class::type_name;
    return result;
  }

 protected:
  ~message_of() = default;
};

// Holds one reference on a message for its own lifetime, or none.
template <class Message>
class message_ref {
 public:
  message_ref() = default;

  // Takes over a reference that the caller holds.
  explicit message_ref(Message* message) : message_(message) {}
  message_ref(message_ref&& other) noexcept : message_(other.detach()) {}
  message_ref& operator=(message_ref&& other) noexcept {
    std::swap(message_, other.message_);
    return *this;
  }
  ~message_ref() {
    if (message_ != nullptr) message_->release();
  }

  explicit operator bool() const { return message_ != nullptr; }
  Message* get() const { return message_; }
  Message* operator->() const { return message_; }
  Message& operator*() const { return *message_; }

  // Hands the reference over to the caller.
  [[nodiscard]] Message* detach() { return std::exchange(message_, nullptr); }

 private:
  Message* message_ = nullptr;
};

// A new message with one reference.
template <class Message, class... Arguments>
message_ref<Message> make_message(Arguments&&... arguments) {
  auto* const message = new Message(std::forward<Arguments>(arguments)...);
  message->addRef();
  return message_ref<Message>(message);
}

// The type string at the start of a form. Reading a different one sets the stream's `ok` to false.
void write_type(cfOStream& s, const cfName& type);
void read_type(cfIStream& s, const cfName& type);
