#include "messages/website.h"

bool CfMsgWebsite::write(cfOStream& s) {
  write_type(s, type_name);
  s.putU32(npTag);
  s.putWide(sender);
  s.putWide(auxText);
  s.putU32(guard);
  writeBag(s, props);
  s.putU32(guard);
  writeBagList(s, inputs);
  s.putU32(guard);
  return pos.write(s);
}

bool CfMsgWebsite::read(cfIStream& s) {
  read_type(s, type_name);
  s.readU32(npTag);
  s.readWide(sender).readWide(auxText);
  s.readU32(guard);
  readBag(s, props);
  s.readU32(guard);
  readBagList(s, inputs);
  s.readU32(guard);
  return pos.read(s);
}

message_ref<CfMsgWebsite> make_website() { return make_message<CfMsgWebsite>(); }
