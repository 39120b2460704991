// What the host and the client library call of each other. This header, with those of the messages
// and records.h, is all that a library needs to know of the host.
//
// The positions in the virtual tables of cfApi and iCfClient, and of cfSink in streams.h, are this
// project's choice.
#pragma once

#include <cstdint>

#include "messages/message.h"
#include "messages/settings.h"

// Ends: when the host's input has ended, calls of `notify` come back at once without effect, and
// the library is unloaded. Its end must stop its threads, or keep their code loaded, and not wait
// for anything else. No exception may come out of the library into the host.

// Receives what comes from the agent. Implemented by the host.
class iCfClientObs {
 public:
  virtual ~iCfClientObs() = default;

  // Takes an object that arrived from the agent; always 0. May be called on any thread, by several
  // at once, and from inside `post`. The object needs to live until the call returns. The observer
  // takes one reference on it and doesn't give it back; the library does that itself when the call
  // is over.
  virtual std::int32_t notify(iCfMsg* object) = 0;
};

// The way to the agent. Implemented by the library.
class iCfClient {
 public:
  virtual ~iCfClient() = default;

  // Stores the observer, which lives as long as the library is loaded.
  virtual std::int32_t addObserver(iCfClientObs* observer) = 0;

  // Takes the message and the caller's reference towards the agent. The library asks for its form
  // through `write` and calls `release` when it is done.
  virtual std::int32_t post(iCfMsg* message) = 0;
};

// Root object of the library.
class cfApi {
 public:
  virtual ~cfApi() = default;

  // The interface of that name, or null. The host asks for client_interface.
  virtual void* getInterface(const cfName& name) = 0;
};

constexpr cfName client_interface{u"iCfClient.1"};

// The library's one export, under this name: gives its root object, or null.
using api_entry = cfApi*();
constexpr char api_entry_name[] = "Api";

// Received objects answer to these names with a record, which the host reads in place.
constexpr cfName npc_name{u"msg::CfMsgNpc"};
constexpr cfName coffer_data_name{u"msg::CfMsgCofferData"};
constexpr cfName set_values_name{u"msg::CfMsgSetValues"};

// Type strings that stand in front of a whole CfMsgWebsite form.
constexpr cfName website_response_name{u"msg::CfMsgWebsiteRsp"};
constexpr cfName website_navigate_name{u"msg::CfMsgWebsiteNavigate"};
