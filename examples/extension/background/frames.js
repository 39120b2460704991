// The documents that the frames of all tabs show, and how to reach each of them.

export function isWebAddress(text) {
  return URL.canParse(text) && ["http:", "https:"].includes(new URL(text).protocol);
}

// Documents without an address of their own (srcdoc, about:blank) belong to the origin that made them.
function addressOf({ url, origin }) {
  return [url, `${origin}/`].find(isWebAddress);
}

export class Frames {
  #api;
  #byKey = new Map();
  #lastKey = 0;

  constructor(api) {
    this.#api = api;
  }

  // Adds the document that opened `port`. Undefined if it belongs to no site.
  open(port) {
    const { sender } = port;
    const source = addressOf(sender);
    if (sender.tab === undefined || source === undefined) return undefined;
    const key = String(++this.#lastKey);
    const { tab, frameId, documentId } = sender;
    const frame = { key, port, tab: tab.id, frameId, documentId, source, login: null };
    this.#byKey.set(key, frame);
    return frame;
  }

  close(frame) {
    this.#byKey.delete(frame.key);
  }

  // Undefined once the document has gone.
  find(key) {
    return this.#byKey.get(key);
  }

  ofTab(tab) {
    return [...this.#byKey.values()].filter((frame) => frame.tab === tab);
  }

  // Sends to this document, and to none that its frame shows later: Chromium delivers by the document's
  // id; elsewhere the port ends with the document that opened it.
  tell(frame, message) {
    if (this.find(frame.key) !== frame) return;
    if (frame.documentId === undefined) frame.port.postMessage(message);
    else this.#tellDocument(frame, message);
  }

  #tellDocument({ tab, documentId }, message) {
    this.#api.tabs.sendMessage(tab, message, { documentId }).catch(() => {});
  }
}
