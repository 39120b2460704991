// The transport, used as other extensions would use it.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { readFileSync } from "node:fs";
import { join, resolve } from "node:path";
import { test } from "node:test";
import * as transport from "../../examples/extension/transport/index.js";

const { envelopesOf, HostPort, largestEnvelope, ReplyJoiner } = transport;
const root = resolve(import.meta.dirname, "../..");

// JSON as Chromium writes it: "<" is escaped too.
function sizeOf(envelope) {
  return Buffer.byteLength(JSON.stringify(envelope).replaceAll("<", "\\u003C"));
}

function joinAll(joiner, envelopes) {
  return envelopes.map(({ id, fragment, msg }) => joiner.add({ reply: "success", id, fragment, data: msg }));
}

test("an id and a text of any length give envelopes that the host reads", () => {
  const ids = ["m1", "ключ", "<".repeat(1000), "ä".repeat(4000), "🔑\ud800".repeat(3000), "x".repeat(8150), "x".repeat(100_000)];
  const texts = [0, 1, 4500, 6100, 100_000].map((size) => "ä🔑\ud800".repeat(size));
  for (const [id, text] of ids.flatMap((id) => texts.map((text) => [id, text]))) {
    const message = { method: text };
    const envelopes = [...envelopesOf(message, id)];
    const joined = joinAll(new ReplyJoiner(), envelopes);
    assert.deepEqual(JSON.stringify(joined.pop()), JSON.stringify(message));
    assert.ok(joined.every((each) => each === undefined));
    assert.ok(envelopes.every((each) => sizeOf(each) <= largestEnvelope), id.slice(0, 9));
    assert.equal(new Set(envelopes.map((each) => each.id)).size, 1);
  }
  assert.equal([...envelopesOf({}, "m1")][0].id, "m1");
  const [one, other] = ["a", "b"].map((end) => [...envelopesOf({}, "x".repeat(9000) + end)][0].id);
  assert.notEqual(one, other);
  assert.throws(() => envelopesOf({}, ""), RangeError);
  assert.throws(() => envelopesOf({ method: "x".repeat(51_000_000) }, "m1"), RangeError);
});

test("what unfinished messages hold is bounded", () => {
  const floods = {
    "many ids": (at) => ({ id: `id-${at}`, fragment: 0, data: "eyJt" }),
    "long ids": (at) => ({ id: `${at}`.padEnd(1_000_000), fragment: 0, data: "" }),
    "empty pieces": (at) => ({ id: "id", fragment: at, data: "" }),
    "long pieces": (at) => ({ id: "id", fragment: at, data: "A".repeat(1_000_000) }),
  };
  for (const [what, piece] of Object.entries(floods)) {
    const joiner = new ReplyJoiner();
    const count = what === "empty pieces" ? 1_100_000 : 400;
    let most = 0;
    for (let at = 0; at < count; ++at) {
      joiner.add({ reply: "success", ...piece(at) });
      most = Math.max(most, joiner.held);
    }
    assert.ok(most <= 64 * 1024 * 1024 && most > 0, `${what}: ${most}`);
  }
});

test("of unfinished messages the one untouched longest goes", () => {
  const joiner = new ReplyJoiner();
  const cut = (id) => [...envelopesOf({ method: id.repeat(9000) }, id)];
  const [first, second] = [cut("first"), cut("second")];
  joinAll(joiner, [first[0], second[0]]);
  for (let at = 0; at < 255; ++at) {
    joinAll(joiner, [...(at === 0 ? first.slice(1, -1) : []), { id: `other ${at}`, fragment: 0, msg: "" }]);
  }
  assert.equal(joinAll(joiner, first.slice(-1))[0].method.length, 45_000);
  assert.throws(() => joinAll(joiner, second.slice(1)));
});

// A browser whose hosts are ports that the test controls.
function fakeBrowser() {
  const ports = [];
  const event = () => ({ listeners: [], addListener(listener) { this.listeners.push(listener); } });
  const connectNative = () => {
    const port = { sent: [], onMessage: event(), onDisconnect: event(), isOpen: true };
    port.postMessage = (envelope) => {
      if (!port.isOpen) throw new Error("disconnected port");
      port.sent.push(envelope);
    };
    port.disconnect = () => (port.isOpen = false);
    port.end = () => { port.isOpen = false; port.onDisconnect.listeners.forEach((each) => each(port)); };
    port.say = (message) => {
      for (const { id, fragment, msg } of envelopesOf(message, "r")) {
        port.onMessage.listeners.forEach((each) => each({ reply: "success", id, fragment, data: msg }));
      }
    };
    port.methods = () => joinAll(new ReplyJoiner(), port.sent).map((message) => message.method);
    ports.push(port);
    return port;
  };
  return { ports, runtime: { connectNative, lastError: { message: "no such host" } } };
}

function openPort(t) {
  t.mock.timers.enable({ apis: ["setTimeout"] });
  const browser = fakeBrowser();
  const said = [];
  const states = [];
  const port = new HostPort(browser, (message) => said.push(message), (...state) => states.push(state));
  return { browser, ports: browser.ports, port, said, states };
}

test("a lost host is started again, ever more seldom until it speaks", (t) => {
  const { ports, port, states } = openPort(t);
  for (const pause of [250, 500, 1000]) {
    ports.at(-1).end();
    port.send({ method: "get-settings" });
    const count = ports.length;
    t.mock.timers.tick(pause - 1);
    assert.equal(ports.length, count);
    t.mock.timers.tick(1);
    assert.deepEqual(ports.at(-1).methods(), ["get-settings"]);
  }
  ports.at(-1).say({});
  ports.at(-1).end();
  t.mock.timers.tick(250);
  assert.equal(ports.length, 5);
  // A host that stays is connected, whether or not it sends anything.
  t.mock.timers.tick(1000);
  const lost = [false, "no such host"];
  assert.deepEqual(states, [lost, lost, lost, [true, ""], lost, [true, ""]]);
});

test("a request outlives a port that has closed unseen, and only so many wait", (t) => {
  const { ports, port } = openPort(t);
  ports[0].isOpen = false;
  for (let at = 0; at < 100; ++at) port.send({ method: `${at}` });
  t.mock.timers.tick(250);
  assert.deepEqual(ports[1].methods(), Array.from({ length: 64 }, (_, at) => `${at + 36}`));
});

test("an earlier port neither speaks nor ends the later one", (t) => {
  const { ports, port, said, states } = openPort(t);
  ports[0].end();
  port.reconnect();
  port.reconnect();
  ports[1].say({ method: "later" });
  ports[0].say({ method: "earlier" });
  ports[0].end();
  t.mock.timers.tick(120_000);
  assert.deepEqual([ports.length, said, states.at(-1)], [2, [{ method: "later" }], [true, ""]]);
});

test("a worker that wakes has a host of its own, and one that was closed has none", (t) => {
  const { browser, ports, port, states } = openPort(t);
  const woken = new HostPort(browser, () => {});
  woken.send({ method: "get-settings" });
  assert.deepEqual([ports[0].sent, ports[1].methods()], [[], ["get-settings"]]);
  port.close();
  t.mock.timers.tick(120_000);
  assert.deepEqual([ports.length, ports[0].isOpen, states], [2, false, [[false, ""]]]);
});

test("a browser that refuses is asked again later", (t) => {
  const { browser, ports, port, states } = openPort(t);
  const connect = browser.runtime.connectNative;
  browser.runtime.connectNative = () => { throw new Error("not allowed"); };
  ports[0].end();
  t.mock.timers.tick(250);
  assert.deepEqual(states.at(-1), [false, "not allowed"]);
  browser.runtime.connectNative = connect;
  t.mock.timers.tick(500);
  port.send({ method: "get-settings" });
  assert.deepEqual(ports[1].methods(), ["get-settings"]);
});

test("the types hold, and name what there is", () => {
  execFileSync(join(root, "examples/stage/node_modules/.bin/tsc"), ["-p", import.meta.dirname], { stdio: "inherit" });
  const types = readFileSync(join(root, "examples/extension/transport/index.d.ts"), "utf8");
  const declared = [...types.matchAll(/^export (?:const|function|class) (\w+)/gm)].map((match) => match[1]);
  assert.deepEqual(Object.keys(transport).sort(), declared.sort());
});
