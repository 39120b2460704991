#include "messages/message.h"

void* iCfMsg::query(const cfName& n) { return n == type_name ? this : nullptr; }

cfName* iCfMsg::nameInto(cfName* result) const {
  *result = type_name;
  return result;
}

bool iCfMsg::write(cfOStream&) { return false; }

bool iCfMsg::read(cfIStream&) { return false; }

std::int32_t iCfMsg::spare() { return 0; }

std::int32_t iCfMsg::addRef() { return refs.fetch_add(1) + 1; }

std::int32_t iCfMsg::decRef() { return refs.fetch_sub(1) - 1; }

void* CfMsgNpcomm::query(const cfName& n) { return n == type_name ? this : iCfMsg::query(n); }

void write_type(cfOStream& s, const cfName& type) { s.putWide(type.text()); }

void read_type(cfIStream& s, const cfName& type) {
  if (!(s.readWide() == wide_view(type.text()))) s.ok = false;
}
