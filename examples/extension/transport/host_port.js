// The connection to the native-messaging host. It reconnects by itself when the host ends.
import { envelopesOf } from "./envelopes.js";
import { ReplyJoiner } from "./reply_joiner.js";

const hostName = "com.orvanta.coffer";

// A host that isn't installed must not be started over and over. In milliseconds, like all times here.
const shortestPause = 250;
const longestPause = 60_000;

// A host that has lived this long without a message works; one that can't be started is reported lost
// sooner.
const settleTime = 1000;

// How many requests wait for a connection. Pages ask again, so older ones have lost their use.
const mostWaiting = 64;

export class HostPort {
  #api;
  #onMessage;
  #onChange;
  #port = null;
  #connected = false;
  #joiner = new ReplyJoiner();
  #waiting = [];
  #pause = shortestPause;
  #timer = null;
  #lastId = 0;

  // `onMessage` gets each message of the host. `onChange` is called when a connection comes or goes, with
  // whether there is one, and the browser's reason if it gives one.
  constructor(api, onMessage, onChange = () => {}) {
    this.#api = api;
    this.#onMessage = onMessage;
    this.#onChange = onChange;
    this.#connect();
  }

  // Sends the message, or keeps it until there is a connection. Throws a RangeError if it is too large.
  send(message) {
    const envelopes = [...envelopesOf(message, `m${++this.#lastId}`)];
    if (this.#port === null || !this.#post(envelopes)) this.#wait(envelopes);
  }

  // Tries at once, without a pause.
  reconnect() {
    if (this.#port === null) this.#connect();
  }

  // Ends the connection for good, until reconnect() is called.
  close() {
    clearTimeout(this.#timer);
    this.#waiting = [];
    if (this.#port === null) return;
    this.#port.disconnect();
    this.#forgetPort("");
  }

  #wait(envelopes) {
    this.#waiting.push(envelopes);
    if (this.#waiting.length > mostWaiting) this.#waiting.shift();
  }

  // False if the host has gone. What it got of the message has no effect then.
  #post(envelopes) {
    const port = this.#port;
    try {
      for (const envelope of envelopes) port.postMessage(envelope);
      return true;
    } catch (error) {
      this.#lose(port, error.message);
      return false;
    }
  }

  #connect() {
    clearTimeout(this.#timer);
    try {
      this.#port = this.#api.runtime.connectNative(hostName);
    } catch (error) {
      this.#retryLater();
      this.#onChange(false, error.message);
      return;
    }
    const port = this.#port;
    port.onMessage.addListener((envelope) => this.#receive(port, envelope));
    port.onDisconnect.addListener(() => this.#lose(port));
    this.#timer = setTimeout(() => this.#settle(), settleTime);
    for (const envelopes of this.#waiting.splice(0)) {
      if (this.#port !== port || !this.#post(envelopes)) this.#wait(envelopes);
    }
  }

  // A host that has sent something, or has stayed, works.
  #settle() {
    clearTimeout(this.#timer);
    this.#pause = shortestPause;
    if (this.#connected) return;
    this.#connected = true;
    this.#onChange(true, "");
  }

  // Messages of an earlier port are ignored: they come from a host that was given up.
  #receive(port, envelope) {
    if (port !== this.#port) return;
    this.#settle();
    let message;
    try {
      message = this.#joiner.add(envelope);
    } catch {
      // Not logged: the text of the error could hold a part of the message.
      return;
    }
    if (message !== undefined) this.#onMessage(message);
  }

  #lose(port, reason) {
    if (port !== this.#port) return;
    const given = port.error ?? this.#api.runtime.lastError;
    this.#retryLater();
    this.#forgetPort(reason ?? given?.message ?? "");
  }

  #forgetPort(reason) {
    this.#port = null;
    this.#connected = false;
    this.#joiner.clear();
    this.#onChange(false, reason);
  }

  #retryLater() {
    clearTimeout(this.#timer);
    this.#timer = setTimeout(() => this.#connect(), this.#pause);
    this.#pause = Math.min(this.#pause * 2, longestPause);
  }
}
