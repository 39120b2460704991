#include "messages/commands.h"

namespace {

template <class Message>
Message* with_reference(Message* message) {
  message->addRef();
  return message;
}

}  // namespace

std::int32_t CfMsgOpenUrl::release() { return iCfMsg::release(); }

void* CfMsgOpenUrl::query(const cfName& n) { return answer(n, {type_name, iCfMsg::type_name}); }

cfName CfMsgOpenUrl::name() const { return type_name; }

bool CfMsgOpenUrl::write(cfOStream& s) {
  write_type(s, type_name);
  s.putWide(uuid);
  s.putWide(url);
  return s.ok != 0;
}

bool CfMsgOpenUrl::read(cfIStream& s) {
  read_type(s, type_name);
  s.readWide(uuid).readWide(url);
  return s.ok();
}

std::int32_t CfMsgRunConsole::release() { return iCfMsg::release(); }

void* CfMsgRunConsole::query(const cfName& n) {
  return answer(n, {type_name, CfMsgNpcomm::type_name, iCfMsg::type_name});
}

cfName CfMsgRunConsole::name() const { return type_name; }

bool CfMsgRunConsole::write(cfOStream& s) {
  write_type(s, type_name);
  s.putU32(npTag);
  s.putU32(consoleCode);
  s.putWide(consoleText1);
  s.putWide(consoleText2);
  return s.ok != 0;
}

bool CfMsgRunConsole::read(cfIStream& s) {
  read_type(s, type_name);
  s.readU32(npTag).readU32(consoleCode);
  s.readWide(consoleText1).readWide(consoleText2);
  return s.ok();
}

std::int32_t CfMsgGetSettings::release() { return iCfMsg::release(); }

void* CfMsgGetSettings::query(const cfName& n) { return answer(n, {type_name, iCfMsg::type_name}); }

cfName CfMsgGetSettings::name() const { return type_name; }

std::int32_t CfMsgCfDbCmd::release() { return iCfMsg::release(); }

void* CfMsgCfDbCmd::query(const cfName& n) {
  return answer(n, {type_name, CfMsgNpcomm::type_name, iCfMsg::type_name});
}

cfName CfMsgCfDbCmd::name() const { return type_name; }

bool CfMsgCfDbCmd::write(cfOStream& s) {
  write_type(s, type_name);
  s.putU32(npTag);
  s.putU32(command);
  s.putWide(dbText1);
  s.putWide(dbText2);
  s.putWide(dbText3);
  s.putU32(dbArg1);
  s.putU32(dbArg2);
  return s.ok != 0;
}

bool CfMsgCfDbCmd::read(cfIStream& s) {
  read_type(s, type_name);
  s.readU32(npTag).readU32(command);
  s.readWide(dbText1).readWide(dbText2).readWide(dbText3);
  s.readU32(dbArg1).readU32(dbArg2);
  return s.ok();
}

std::int32_t CfMsgUnLockDb::release() { return iCfMsg::release(); }

void* CfMsgUnLockDb::query(const cfName& n) {
  return answer(n, {type_name, CfMsgNpcomm::type_name, iCfMsg::type_name});
}

cfName CfMsgUnLockDb::name() const { return type_name; }

bool CfMsgUnLockDb::write(cfOStream& s) {
  write_type(s, type_name);
  s.putU32(npTag);
  s.putWide(unlockText1);
  s.putWide(unlockText2);
  s.putU32(unlockArg);
  return pos.write(s);
}

bool CfMsgUnLockDb::read(cfIStream& s) {
  read_type(s, type_name);
  s.readU32(npTag);
  s.readWide(unlockText1).readWide(unlockText2);
  s.readU32(unlockArg);
  return pos.read(s);
}

CfMsgRunConsole* make_run_console(std::uint32_t code) {
  return with_reference(new CfMsgRunConsole(code));
}

CfMsgGetSettings* make_get_settings() { return with_reference(new CfMsgGetSettings); }

CfMsgUnLockDb* make_unlock_db() { return with_reference(new CfMsgUnLockDb); }
