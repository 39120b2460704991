// What the host and the client library call of each other. This header, with those of the messages
// and records.h, is all that a library needs to know of the host. docs/messages.md has the same in
// tables, for libraries that don't use these headers.
//
// Names in camel case, here and in the messages, belong to the interface that the library sees; all
// others are the host's own and are written with underscores.
//
// This header and streams.h fix which operations stand in the slots after 0 of cfApi, iCfClient and
// cfSink. A library may have more operations after these.
#pragma once

#include <cstdint>

#include "messages/message.h"
#include "messages/records.h"

// The end: when the host's input has ended, calls of `notify` return at once without effect, and
// the library is unloaded. As it ends, the library must stop its threads, or keep their code
// loaded, and must not wait for anything else. No exception may leave the library and reach the
// host.

// Receives what comes from the agent. Implemented by the host.
class iCfClientObs {
 public:
  // Does nothing: the observer lives as long as the process.
  virtual void* deletingDestructor(std::uint32_t flags) = 0;

  // Takes an object that arrived from the agent; always returns 0. May be called on any thread, by
  // several at once, and from inside `post`. The object must live until the call returns. The
  // observer takes one reference on it and doesn't release it; the library does that itself after
  // the call.
  virtual std::int32_t notify(iCfMsg* object) = 0;

 protected:
  ~iCfClientObs() = default;
};

// The connection to the agent. Implemented by the library.
class iCfClient {
 public:
  virtual void* deletingDestructor(std::uint32_t flags) = 0;

  // Stores the observer, which exists as long as the library is loaded. The result is ignored.
  virtual std::int32_t addObserver(iCfClientObs* observer) = 0;

  // Sends the message to the agent, and takes over the caller's reference. The library gets its
  // form through `write`, and calls `release` when it is done. The result is ignored.
  virtual std::int32_t post(iCfMsg* message) = 0;

 protected:
  ~iCfClient() = default;
};

// Root object of the library.
class cfApi {
 public:
  virtual void* deletingDestructor(std::uint32_t flags) = 0;

  // The interface of that name, or null. The host asks for client_interface.
  virtual void* getInterface(const cfName& name) = 0;

 protected:
  ~cfApi() = default;
};

constexpr cfName client_interface{u"iCfClient.1"};

// The library's one export, under this name. Returns its root object, or null.
using api_entry = cfApi*();
constexpr char api_entry_name[] = "Api";

// Type strings that precede a whole CfMsgWebsite form.
constexpr cfName website_response_name{u"msg::CfMsgWebsiteRsp"};
constexpr cfName website_navigate_name{u"msg::CfMsgWebsiteNavigate"};
