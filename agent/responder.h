// Decides which notification answers which request. Used by one thread.
#pragma once

#include <cstdint>

#include "agent/coffer.h"
#include "messages/commands.h"
#include "messages/library/received_object.h"
#include "messages/website.h"

class responder {
 public:
  explicit responder(coffer& store) : coffer_(store) {}

  // The object for the first `notify`: the coffer's state.
  owned_message greet();

  // Does what the request asks for and returns the object to notify with. Null if there is nothing
  // to say.
  owned_message respond(iCfMsg& request);

 private:
  owned_message state(bool changed) const;
  owned_message settings() const;
  owned_message answer_page(CfMsgWebsite& page);
  owned_message open_console(const CfMsgRunConsole& request);
  owned_message run_command(const CfMsgCfDbCmd& request);

  coffer& coffer_;
  std::uint32_t consoles_opened_ = 0;
};
