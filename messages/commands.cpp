#include "messages/commands.h"

bool CfMsgOpenUrl::write(cfOStream& s) {
  write_type(s, type_name);
  s.putWide(uuid);
  s.putWide(url);
  return s.ok != 0;
}

bool CfMsgOpenUrl::read(cfIStream& s) {
  read_type(s, type_name);
  s.readWide(uuid).readWide(url);
  return s.ok;
}

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
  return s.ok;
}

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
  return s.ok;
}

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

message_ref<CfMsgRunConsole> make_run_console(std::uint32_t code) {
  return make_message<CfMsgRunConsole>(code);
}

message_ref<CfMsgGetSettings> make_get_settings() { return make_message<CfMsgGetSettings>(); }

message_ref<CfMsgUnLockDb> make_unlock_db() { return make_message<CfMsgUnLockDb>(); }
