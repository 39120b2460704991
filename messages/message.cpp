#include "messages/message.h"

std::int32_t iCfMsg::release() {
  const std::int32_t left = decRef();
  if (left <= 0) delete this;
  return left;
}

void* iCfMsg::query(const cfName& n) { return answer(n, {type_name}); }

cfName iCfMsg::name() const { return type_name; }

bool iCfMsg::write(cfOStream&) { return false; }

bool iCfMsg::read(cfIStream&) { return false; }

std::int32_t iCfMsg::spare() { return 0; }

std::int32_t iCfMsg::addRef() { return refs.fetch_add(1) + 1; }

std::int32_t iCfMsg::decRef() { return refs.fetch_sub(1) - 1; }

void* iCfMsg::answer(const cfName& n, std::initializer_list<cfName> names) {
  for (const cfName& own : names) {
    if (own == n) return this;
  }
  return nullptr;
}

void write_type(cfOStream& s, const cfName& type) { s.putWide(type.text()); }

void read_type(cfIStream& s, const cfName& type) {
  if (!(s.readWide() == wide_view(type.text()))) s.fail();
}
