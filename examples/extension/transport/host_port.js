// The connection to the native-messaging host. It comes back by itself when the host ends.
import { envelopesOf, ReplyJoiner } from "./envelopes.js";

const hostName = "com.orvanta.coffer";

// A host that isn't installed must not be started over and over.
const shortestPause = 250;
const longestPause = 60_000;

// Requests that wait for a connection. Pages ask again; what is older has lost its use.
const mostWaiting = 64;

export class HostPort {
  #api;
  #onMessage;
  #onChange;
  #port = null;
  #joiner = new ReplyJoiner();
  #waiting = [];
  #pause = shortestPause;
  #timer = null;
  #lastId = 0;

  // `onMessage` gets each message of the host. `onChange` gets whether there is a connection each time
  // that one came or went, and the browser's reason if it gives one.
  constructor(api, onMessage, onChange) {
    this.#api = api;
    this.#onMessage = onMessage;
    this.#onChange = onChange;
    this.#connect();
  }

  send(message) {
    if (this.#port === null) {
      this.#waiting.push(message);
      if (this.#waiting.length > mostWaiting) this.#waiting.shift();
      return;
    }
    const id = `m${++this.#lastId}`;
    for (const envelope of envelopesOf(message, id)) this.#port.postMessage(envelope);
  }

  // Tries at once, whatever the pause.
  reconnect() {
    if (this.#port === null) this.#connect();
  }

  #connect() {
    clearTimeout(this.#timer);
    this.#timer = null;
    const port = this.#api.runtime.connectNative(hostName);
    this.#port = port;
    port.onMessage.addListener((envelope) => this.#receive(envelope));
    port.onDisconnect.addListener(() => this.#disconnected(port));
    const waiting = this.#waiting;
    this.#waiting = [];
    for (const message of waiting) this.send(message);
    this.#onChange(true, "");
  }

  #receive(envelope) {
    // Whoever has something to say is a host that works.
    this.#pause = shortestPause;
    let message;
    try {
      message = this.#joiner.add(envelope);
    } catch {
      // Not logged: the text of the error could hold a part of the message.
      return;
    }
    if (message !== undefined) this.#onMessage(message);
  }

  #disconnected(port) {
    const reason = (port.error ?? this.#api.runtime.lastError)?.message ?? "";
    this.#port = null;
    this.#joiner.clear();
    this.#timer = setTimeout(() => this.#connect(), this.#pause);
    this.#pause = Math.min(this.#pause * 2, longestPause);
    this.#onChange(false, reason);
  }
}
