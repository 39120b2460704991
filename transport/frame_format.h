// Frames on the standard streams, in the browser's native-messaging format: a 4-byte little-endian
// length that doesn't count itself, then that many bytes of JSON text, an envelope.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

static_assert(std::endian::native == std::endian::little,
              "lengths go between memory and stream as they are");

using frame_length = std::uint32_t;
static_assert(sizeof(frame_length) == 4);

// An inbound length of this or more ends the process: the stream is out of step, or its sender
// doesn't keep to the protocol.
constexpr frame_length frame_length_limit = 8192;

// Largest envelope of an outbound frame, in bytes.
constexpr std::size_t max_output_size = 512;
