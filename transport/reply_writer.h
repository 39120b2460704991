// Sends replies, as the frames call outgoing messages: base64 text cut into pieces, each in an
// envelope behind its length. Any number of threads may send at once; frames stay whole, and ids
// tell the replies apart.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

// How long a frame may wait for its reader once the input has ended and everything in it has been
// handled. Then the process ends with the exit value of an ended input: the browser expects a
// prompt end even when it has stopped reading. Before that a frame waits as long as somebody can
// still read it, so that no request is lost.
constexpr std::chrono::milliseconds abandoned_timeout{500};

// Writes the JSON text of one message as frames. Nothing else in the host writes to standard
// output. True when every frame was written in full. After the first frame that couldn't be
// written, the rest of the reply is dropped and the result is false.
bool send_reply(std::string_view json_text, std::FILE* output = stdout);

// The envelope of one frame. `fragment` is its number, from 0, or negative for the last frame.
std::string make_reply_packet(std::string_view id, std::string_view piece, std::int32_t fragment);
