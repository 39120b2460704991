// Joins the pieces of the host's messages; several messages may be unfinished at a time.
import { decodeMessage } from "./envelopes.js";

// What unfinished messages may take in all. A host that sends more is broken.
const mostUnfinished = 256;
const mostHeld = 64 * 1024 * 1024;

// What a piece costs besides its characters, so that empty ones count too.
const costOfPiece = 64;

const costOf = (text) => text.length + costOfPiece;

export class ReplyJoiner {
  #unfinished = new Map();
  #held = 0;

  // What unfinished messages take: characters and costs.
  get held() {
    return this.#held;
  }

  // The message that this envelope completes, or undefined. Pieces out of order, and those of a
  // message that was dropped, are lost. Throws if the joined text isn't a message.
  add(envelope) {
    const { reply, id, fragment, data } = envelope ?? {};
    if (reply !== "success" || typeof id !== "string" || typeof data !== "string") return undefined;
    const gathered = this.#take(id) ?? { pieces: [], cost: costOf(id) };
    const isFinal = fragment === "final";
    if (!isFinal && fragment !== gathered.pieces.length) return undefined;
    gathered.pieces.push(data);
    gathered.cost += costOf(data);
    if (isFinal) return decodeMessage(gathered.pieces.join(""));
    this.#keep(id, gathered);
    return undefined;
  }

  clear() {
    this.#unfinished.clear();
    this.#held = 0;
  }

  // Those touched longest ago are dropped first, unless this one is too large by itself.
  #keep(id, gathered) {
    if (gathered.cost > mostHeld) return;
    this.#unfinished.set(id, gathered);
    this.#held += gathered.cost;
    while (this.#unfinished.size > mostUnfinished || this.#held > mostHeld) {
      this.#take(this.#unfinished.keys().next().value);
    }
  }

  #take(id) {
    const gathered = this.#unfinished.get(id);
    if (gathered === undefined) return undefined;
    this.#unfinished.delete(id);
    this.#held -= gathered.cost;
    return gathered;
  }
}
