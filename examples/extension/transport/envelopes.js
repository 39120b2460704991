// Between messages and the envelopes of native-messaging frames. A message is JSON text; it travels as
// base64 of its UTF-8 form, in pieces, one piece to an envelope, under one id.

// The host reads no longer envelope than this, in bytes of JSON.
export const largestEnvelope = 8191;

// What unfinished replies may hold; a host that sends more is broken.
const mostUnfinished = 256;
const mostBase64 = 64 * 1024 * 1024;

export function encodeMessage(message) {
  const bytes = new TextEncoder().encode(JSON.stringify(message));
  let binary = "";
  // In steps, since a call takes only so many arguments.
  for (let at = 0; at < bytes.length; at += 8192) {
    binary += String.fromCharCode(...bytes.subarray(at, at + 8192));
  }
  return btoa(binary);
}

export function decodeMessage(base64) {
  const bytes = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
  return JSON.parse(new TextDecoder("utf-8", { fatal: true }).decode(bytes));
}

// The envelopes of a message, in the order in which they have to go out.
export function* envelopesOf(message, id) {
  const base64 = encodeMessage(message);
  // The closing mark is the longest that the member "fragment" gets.
  const room = largestEnvelope - JSON.stringify({ id, fragment: "final", msg: "" }).length;
  let fragment = 0;
  let at = 0;
  for (; base64.length - at > room; at += room) {
    yield { id, fragment: fragment++, msg: base64.slice(at, at + room) };
  }
  yield { id, fragment: "final", msg: base64.slice(at) };
}

// Joins the pieces of replies, of which several may be under way.
export class ReplyJoiner {
  #unfinished = new Map();
  #held = 0;

  // The message that this envelope completes, or undefined. Throws if the reply is no message.
  add(envelope) {
    const { reply, id, fragment, data } = envelope ?? {};
    if (reply !== "success" || typeof id !== "string" || typeof data !== "string") return undefined;
    const pieces = this.#unfinished.get(id) ?? [];
    pieces.push(data);
    this.#held += data.length;
    this.#unfinished.set(id, pieces);
    if (fragment === "final") return decodeMessage(this.#take(id));
    while (this.#unfinished.size > mostUnfinished || this.#held > mostBase64) {
      this.#take(this.#unfinished.keys().next().value);
    }
    return undefined;
  }

  clear() {
    this.#unfinished.clear();
    this.#held = 0;
  }

  #take(id) {
    const base64 = this.#unfinished.get(id).join("");
    this.#unfinished.delete(id);
    this.#held -= base64.length;
    return base64;
  }
}
