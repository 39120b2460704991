// The byte streams that messages are read from and written to.
//
// A payload is a plain sequence of fields: wide strings as their UTF-16 code units, low byte first,
// followed by a zero unit; integers as 4 bytes, low byte first. Nothing is aligned.
// docs/messages.md describes the forms.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/wide.h"

// A terminated wide string inside a payload: where it starts, possibly at an odd address, and its
// length in code units without the terminator. A default one means that there was no string.
struct payload_text {
  const unsigned char* bytes = nullptr;
  std::size_t length = 0;

  explicit operator bool() const { return bytes != nullptr; }
  bool empty() const { return length == 0; }
  // Compares all code units; a prefix doesn't match.
  bool operator==(wide_view text) const;
  wide_string str() const;
};

// Reader of one payload, whose bytes it doesn't own. A field that isn't whole sets `ok` to false
// for good; later reads are harmless. Used by one thread.
//
// The host and the client library pass streams to each other and use the fields in place. The
// fields are addresses kept as numbers: `cursor` may pass the end of the payload.
class cfIStream {
 public:
  // A `length` of 0 or less means an empty payload.
  cfIStream(const unsigned char* bytes, std::ptrdiff_t length)
      : begin(reinterpret_cast<std::uintptr_t>(bytes)),
        end(begin + static_cast<std::uintptr_t>(length > 0 ? length : 0)),
        cursor(begin) {}
  cfIStream(const cfIStream&) = delete;
  cfIStream& operator=(const cfIStream&) = delete;

  virtual void* deletingDestructor(std::uint32_t flags);

  std::uintptr_t begin;   // the first byte
  std::uintptr_t end;     // behind the last byte
  std::uintptr_t cursor;  // the next byte to read
  bool ok = true;         // no failure so far

  // Bytes that haven't been read.
  std::size_t left() const { return cursor < end ? end - cursor : 0; }

  // The next string, or none if its terminator doesn't lie wholly inside the payload.
  payload_text readWide();

  // Reads the next string into `target`, which becomes empty if there is none.
  cfIStream& readWide(wide_string& target);

  // Reads the next 4 bytes into `target`, which keeps its value if there are fewer. The position
  // moves on by 4 in any case.
  cfIStream& readU32(std::uint32_t& target);
  cfIStream& readU32(std::int32_t& target);
};

// Takes the bytes of an outgoing message: an object of the client library. The library may give its
// sinks more operations after these two.
class cfSink {
 public:
  virtual void* deletingDestructor(std::uint32_t flags) = 0;

  // False if the bytes weren't taken.
  virtual bool write_bytes(const void* bytes, std::uint64_t size) = 0;

 protected:
  ~cfSink() = default;
};

// The writer that the client library hands to `write`. The object is the library's and used in
// place, so the layout is fixed.
struct cfOStream {
  std::uint64_t reserved1;
  cfSink* sink;
  unsigned char reserved2;
  unsigned char ok;  // nonzero: no failure so far

  // All writing goes through this: one call of the sink, and none after the first failure. Without
  // a sink every call fails.
  void putBytes(const void* data, std::size_t size);

  // One string with its terminator, which must follow `text` in memory.
  void putWide(wide_view text);
  void putU32(std::uint32_t value);
};
