// Base of everything that crosses the client library: reference-counted objects that answer to type
// names and can write themselves to, and read themselves from, a flat payload.
//
// The library calls these objects through their virtual table, so the order of the virtual
// functions is part of the interface. A message is filled by one thread before it is handed over
// and not changed afterwards; only its count may be used by several threads.
#pragma once

#include <atomic>
#include <cstdint>
#include <initializer_list>

#include "messages/name.h"
#include "messages/streams.h"

class iCfMsg {
 public:
  static constexpr cfName type_name{u"iCfMsg"};

  iCfMsg() = default;
  virtual ~iCfMsg() = default;
  iCfMsg(const iCfMsg&) = delete;
  iCfMsg& operator=(const iCfMsg&) = delete;

  // Drops one reference and frees the object with the last one. Gives the count that is left.
  virtual std::int32_t release() = 0;

  // The object itself if its class or one of its bases has this name, else null.
  virtual void* query(const cfName& n);

  virtual cfName name() const;

  // Append the whole form to the stream, and fill the object from one. Both give the stream's `ok`;
  // false, without touching the stream, for a class that has no form. `read` goes through all
  // fields whatever fails on the way.
  virtual bool write(cfOStream& s);
  virtual bool read(cfIStream& s);

  // Always 0. Keeps its place in the table for the client library.
  virtual std::int32_t spare();

  // Take and drop a reference and give the new count; a new object has none. decRef never frees.
  virtual std::int32_t addRef();
  virtual std::int32_t decRef();

 protected:
  // The object if `n` is among the names of its class and bases.
  void* answer(const cfName& n, std::initializer_list<cfName> names);

 private:
  std::atomic<std::int32_t> refs{0};
};

// Base of the messages about a page or the store. Abstract.
class CfMsgNpcomm : public iCfMsg {
 public:
  static constexpr cfName type_name{u"msg::CfMsgNpcomm"};

  std::uint32_t npTag = 0;              // on the wire; never set on what the host sends
  std::uint32_t npAux = 0;              // not on the wire
  std::uint64_t npCookie = UINT64_MAX;  // not on the wire

 protected:
  CfMsgNpcomm() = default;
  explicit CfMsgNpcomm(std::uint32_t aux) : npAux(aux) {}
};

// The type string at the start of a form. Reading one that differs turns the stream's `ok` false.
void write_type(cfOStream& s, const cfName& type);
void read_type(cfIStream& s, const cfName& type);
