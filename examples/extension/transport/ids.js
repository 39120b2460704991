// The ids of messages, short enough for an envelope.

// In bytes of JSON. Most of an envelope is for the piece.
const longestId = 1024;

// Browsers write JSON in their own ways. Some escape "<", or everything that isn't ASCII; at most, a UTF-16
// unit takes six bytes.
const plain = /[ !#-;=?-[\]^-~]/;
const longestUnit = 6;

// The bytes that a text takes between its quotation marks, at most.
export function sizeInJson(text) {
  let size = 0;
  for (let at = 0; at < text.length; ++at) size += plain.test(text[at]) ? 1 : longestUnit;
  return size;
}

// A hash of 64 bits: FNV-1a over UTF-16 units. Ids are tags and keep nothing secret.
function hash(text) {
  let state = 0xcbf29ce484222325n;
  for (let at = 0; at < text.length; ++at) {
    state = BigInt.asUintN(64, (state ^ BigInt(text.charCodeAt(at))) * 0x100000001b3n);
  }
  return state.toString(16).padStart(16, "0");
}

// The id itself, or for a long one a shorter one that stands for it.
export function shortenId(id) {
  const isShort = id.length <= longestId && sizeInJson(id) <= longestId;
  return isShort ? id : `long-${id.length}-${hash(id)}`;
}
