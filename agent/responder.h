// Which request leads to which notification. Used by one thread.
#pragma once

#include <cstdint>
#include <memory>

#include "agent/coffer.h"
#include "messages/commands.h"
#include "messages/website.h"

class responder {
 public:
  explicit responder(coffer& store) : coffer_(store) {}

  // The object for the first `notify`: the coffer's state.
  std::unique_ptr<iCfMsg> greet();

  // Does what the request asks for and gives the object to notify of. Null if there is nothing to
  // say.
  std::unique_ptr<iCfMsg> respond(iCfMsg& request);

 private:
  std::unique_ptr<iCfMsg> state(bool changed) const;
  std::unique_ptr<iCfMsg> settings() const;
  std::unique_ptr<iCfMsg> answer_page(CfMsgWebsite& page);
  std::unique_ptr<iCfMsg> open_console(const CfMsgRunConsole& request);
  std::unique_ptr<iCfMsg> run_command(const CfMsgCfDbCmd& request);

  coffer& coffer_;
  std::uint32_t consoles_opened_ = 0;
};
