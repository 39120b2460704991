#include "messages/website.h"

std::int32_t CfMsgWebsite::release() { return iCfMsg::release(); }

void* CfMsgWebsite::query(const cfName& n) {
  return answer(n, {type_name, CfMsgNpcomm::type_name, iCfMsg::type_name});
}

cfName CfMsgWebsite::name() const { return type_name; }

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

CfMsgWebsite* make_website() {
  auto* const message = new CfMsgWebsite;
  message->addRef();
  return message;
}
