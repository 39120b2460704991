// Between the host and the pages: every message of a page goes out with the name of its sender, and
// what comes back for that sender goes to that frame alone.
import { HostPort } from "./transport/host_port.js";

const api = globalThis.browser ?? globalThis.chrome;

// What the agent calls the state of a coffer that may be read.
const unlocked = 1;

const state = { connected: false, reason: "", locked: true, settings: {} };

// Tabs that the agent has sent to a login page, with the login's name; for their next page only.
const expectedLogins = new Map();

// What each tab shows, as far as it has asked.
const shownAddresses = new Map();

const port = new HostPort(api, receive, (connected, reason) => {
  state.connected = connected;
  state.reason = reason;
  // A new host says anew what it knows; until then nothing is taken for granted.
  if (!connected) state.locked = true;
});

function senderName(sender, documentId) {
  return `${sender.tab.id}.${sender.frameId}.${documentId}`;
}

function parseSender(name) {
  const [tab, frame, documentId] = String(name).split(".");
  return { tab: Number(tab), frame: Number(frame), documentId };
}

// A frame may be gone by the time that its answer comes.
function tellFrame(tab, message, options) {
  api.tabs.sendMessage(tab, message, options).catch(() => {});
}

async function tellAllPages(message) {
  for (const tab of await api.tabs.query({})) tellFrame(tab.id, message);
}

function fill(website) {
  const { tab, frame, documentId } = parseSender(website.sender);
  if (!Number.isInteger(tab) || !Number.isInteger(frame)) return;
  const inputs = Array.isArray(website.inputs) ? website.inputs : [];
  tellFrame(tab, { type: "fill", documentId, inputs }, { frameId: frame });
}

function isWebAddress(text) {
  return URL.canParse(text) && ["http:", "https:"].includes(new URL(text).protocol);
}

async function navigate(website) {
  const { tab } = parseSender(website.sender);
  if (!Number.isInteger(tab) || !isWebAddress(website.source)) return;
  if (shownAddresses.get(tab) === website.source) {
    // It is there already; loading it again would only make it ask again.
    fill(website);
    return;
  }
  expectedLogins.set(tab, String(website["navigate-login"] ?? ""));
  await api.tabs.update(tab, { url: website.source }).catch(() => expectedLogins.delete(tab));
}

function takeState(data) {
  const wasLocked = state.locked;
  state.locked = data.dbStatus !== unlocked;
  state.settings = { ...data.default_settings, ...data.settings };
  // What could not be filled before can be now, and pages loaded meanwhile have had no answer.
  if (wasLocked && !state.locked) tellAllPages({ type: "ask-again" });
}

function openAddress({ url }) {
  // Addresses of other schemes are for the agent's own windows.
  if (isWebAddress(url)) api.tabs.create({ url });
}

const receivers = {
  coffer_info_update: fill,
  page_input_update: fill,
  navigate_login: navigate,
  "coffer-init-data": takeState,
  "coffer-set-settings": (settings) => Object.assign(state.settings, settings),
  "coffer-open-url": openAddress,
};

function receive(message) {
  for (const [name, body] of Object.entries(message)) {
    if (Object.hasOwn(receivers, name) && body !== null) receivers[name](body);
  }
}

const pageMethods = ["get-info-for-page", "save-info-from-page", "drop-down"];
const commands = [
  "lock-coffer",
  "unlock-coffer",
  "open-coffer",
  "configure-coffer",
  "open-settings",
  "get-settings",
];

// The browser's word on where a page is from counts, not the page's.
function askForPage({ method, documentId, page }, sender) {
  const data = { ...page, sender: senderName(sender, documentId), source: sender.url };
  if (sender.frameId === 0) shownAddresses.set(sender.tab.id, sender.url);
  if (sender.frameId === 0 && expectedLogins.has(sender.tab.id)) {
    data.navigate_login = expectedLogins.get(sender.tab.id);
    expectedLogins.delete(sender.tab.id);
  }
  port.send({ method, data });
}

api.runtime.onMessage.addListener((message, sender, answer) => {
  if (message.type === "page" && sender.tab && pageMethods.includes(message.method)) {
    askForPage(message, sender);
  } else if (message.type === "command" && isOwnPage(sender) && commands.includes(message.method)) {
    runCommand(message.method);
  } else if (message.type === "state" && isOwnPage(sender)) {
    answer(state);
  }
});

api.tabs.onRemoved.addListener((tab) => {
  expectedLogins.delete(tab);
  shownAddresses.delete(tab);
});

// The popup, also where it is opened in a tab; never a page of the web.
function isOwnPage(sender) {
  return sender.url?.startsWith(api.runtime.getURL(""));
}

function runCommand(method) {
  port.reconnect();
  port.send({ method });
}
