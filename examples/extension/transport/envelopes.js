// Turns messages into the envelopes of native-messaging frames, and back. A message is JSON text. It travels
// as the base64 of its UTF-8 form, cut into pieces: one piece in each envelope, all under one id.
import { shortenId, sizeInJson } from "./ids.js";

// The longest envelope that the host reads, in bytes of JSON.
export const largestEnvelope = 8191;

// The longest base64 text of a message, in characters; the host drops longer ones.
export const largestMessage = 64 * 1024 * 1024;

// How many arguments one call may have, in every browser.
const mostArguments = 8192;

export function encodeMessage(message) {
  const bytes = new TextEncoder().encode(JSON.stringify(message));
  let binary = "";
  for (let at = 0; at < bytes.length; at += mostArguments) {
    binary += String.fromCharCode(...bytes.subarray(at, at + mostArguments));
  }
  return btoa(binary);
}

export function decodeMessage(base64) {
  const binary = atob(base64);
  const bytes = new Uint8Array(binary.length);
  for (let at = 0; at < binary.length; ++at) bytes[at] = binary.charCodeAt(at);
  return JSON.parse(new TextDecoder("utf-8", { fatal: true }).decode(bytes));
}

// The room in an envelope for its piece. "final" is the longest value of "fragment", up to ten million
// pieces.
function roomBeside(id) {
  const frame = JSON.stringify({ id: "", fragment: "final", msg: "" });
  return largestEnvelope - frame.length - sizeInJson(id);
}

// The envelopes of a message, in the order in which they must be sent. The id must not be empty; a long one
// is shortened. Throws a RangeError for a message that the host would drop.
export function envelopesOf(message, id) {
  if (typeof id !== "string" || id === "") throw new RangeError("a message needs an id that is not empty");
  const base64 = encodeMessage(message);
  if (base64.length > largestMessage) throw new RangeError("the message is too large for the host");
  return cutIntoEnvelopes(base64, shortenId(id));
}

function* cutIntoEnvelopes(base64, id) {
  const room = roomBeside(id);
  let fragment = 0;
  let at = 0;
  for (; base64.length - at > room; at += room) {
    yield { id, fragment: fragment++, msg: base64.slice(at, at + room) };
  }
  yield { id, fragment: "final", msg: base64.slice(at) };
}
