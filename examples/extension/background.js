// Connects the pages with the host: every page goes out with the name of its document, and what comes back
// for that name goes to that document alone.
import { CofferState } from "./background/coffer_state.js";
import { Frames, isWebAddress } from "./background/frames.js";
import { answerOwnPages } from "./background/own_pages.js";
import { TypedLogins } from "./background/typed_logins.js";
import { HostPort } from "./transport/index.js";

const api = globalThis.browser ?? globalThis.chrome;

const state = new CofferState();
const frames = new Frames(api);
const typedLogins = new TypedLogins((frame, page) => sendPage(frame, "save-info-from-page", 0, page));

// Tabs that the agent has sent to a login page, with the login's name and the document that they showed.
// An entry counts for the tab's next document only.
const expectedLogins = new Map();

const port = new HostPort(api, receive, (connected, reason) => state.setConnected(connected, reason));

const byUser = "user";

// The host returns the sender unchanged: the document that asks, the number of its request, and whether the
// user has asked for it.
function senderOf(frame, method, request) {
  return `${frame.key}.${request}.${method === "drop-down" ? byUser : "page"}`;
}

function parseSender(sender) {
  const [key, request, by] = String(sender).split(".");
  return { frame: frames.find(key), request: Number(request), isByUser: by === byUser };
}

async function tellAllPages(message) {
  for (const tab of await api.tabs.query({})) api.tabs.sendMessage(tab.id, message).catch(() => {});
}

// The user name that the agent has for the page, which may be empty; null if it has no login. An agent that
// is in doubt about the page's forms may tell of its login all the same.
function loginIn({ inputs, "known-login": known }) {
  if (typeof known === "string") return known;
  const filled = inputs.filter((input) => input?.dbSchema);
  if (filled.length === 0) return null;
  return String(filled.find((input) => input.dbSchema === "user")?.dbvalue ?? "");
}

// Only what the frame needs for filling. The inputs keep their positions.
function answersIn(inputs) {
  return inputs.map((input) => {
    const { name, dbSchema, dbvalue } = input ?? {};
    return dbSchema ? { name, dbSchema, dbvalue: String(dbvalue ?? "") } : null;
  });
}

function mayFill(frame, isByUser) {
  return isByUser || (state.fillsUnasked && !frame.needsUser);
}

function fill(website) {
  const { frame, request, isByUser } = parseSender(website.sender);
  if (frame === undefined || !Array.isArray(website.inputs)) return;
  frame.login = loginIn(website);
  if (frame.login === null) return;
  typedLogins.hasLogin(frame);
  if (!mayFill(frame, isByUser)) return;
  frames.tell(frame, { type: "fill", request, byUser: isByUser, inputs: answersIn(website.inputs) });
}

async function navigate(website) {
  const { frame } = parseSender(website.sender);
  if (frame === undefined || !isWebAddress(website.source)) return;
  if (frame.source === website.source) {
    // The tab shows it already; loading it again would only make it ask again.
    fill(website);
    return;
  }
  expectedLogins.set(frame.tab, { login: String(website["navigate-login"] ?? ""), from: frame.key });
  await api.tabs.update(frame.tab, { url: website.source }).catch(() => expectedLogins.delete(frame.tab));
}

function takeData(data) {
  // What could not be filled before now can be, and pages that were loaded meanwhile have had no answer.
  if (state.takeData(data)) tellAllPages({ type: "ask-again" });
}

function openAddress({ url }) {
  // Addresses of other schemes are for the agent's own windows.
  if (isWebAddress(url)) api.tabs.create({ url });
}

const receivers = {
  coffer_info_update: fill,
  page_input_update: fill,
  navigate_login: navigate,
  "coffer-init-data": takeData,
  "coffer-set-settings": (settings) => state.takeSettings(settings),
  "coffer-open-url": openAddress,
};

function receive(message) {
  for (const [name, body] of Object.entries(message)) {
    if (Object.hasOwn(receivers, name) && body !== null) receivers[name](body);
  }
}

// The browser says where a page is from; the page's own word doesn't count.
function sendPage(frame, method, request, page, more = {}) {
  const sender = senderOf(frame, method, request);
  port.send({ method, data: { ...page, ...more, sender, source: frame.source } });
}

function takeExpectedLogin(frame) {
  const expected = expectedLogins.get(frame.tab);
  if (expected === undefined || frame.frameId !== 0 || frame.key === expected.from) return {};
  expectedLogins.delete(frame.tab);
  return { navigate_login: expected.login };
}

const pageMethods = ["get-info-for-page", "drop-down"];

const frameReceivers = {
  page(frame, { method, request, needsUser, page }) {
    if (!pageMethods.includes(method)) return;
    frame.needsUser = needsUser;
    if (page.inputs.some((input) => input.type === "password")) typedLogins.passwordShown(frame);
    sendPage(frame, method, request, page, takeExpectedLogin(frame));
  },
  sent: (frame, { page }) => typedLogins.sent(frame, page),
  "form-gone": (frame) => typedLogins.formGone(frame),
  "taken-back": (frame) => typedLogins.takenBack(frame),
};

api.runtime.onConnect.addListener((connection) => {
  const frame = frames.open(connection);
  if (frame === undefined) return;
  typedLogins.frameOpened(frame);
  connection.onMessage.addListener((message) => {
    if (Object.hasOwn(frameReceivers, message.type)) frameReceivers[message.type](frame, message);
  });
  connection.onDisconnect.addListener(() => {
    frames.close(frame);
    typedLogins.frameClosed(frame);
  });
});

api.tabs.onRemoved.addListener((tab) => expectedLogins.delete(tab));

answerOwnPages(api, { frames, port, state });
