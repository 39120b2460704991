// Small pages, each with what must be filled in or saved: pages/expected.json lists them all.
import assert from "node:assert/strict";
import { chmodSync, mkdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { setTimeout as pause } from "node:timers/promises";
import { isDeepStrictEqual } from "node:util";
import { browsers, start } from "../../examples/stage/browsers.js";
import { startSite } from "../../examples/stage/site.js";
import { installHost, root, until } from "../../examples/stage/stage.js";

const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");
const folder = join(root, "build/browser/pages");
const expected = JSON.parse(readFileSync(join(import.meta.dirname, "pages/expected.json"), "utf8"));

// How many tabs are open at a time.
const concurrency = 8;

// How long to watch for wrong filling, in milliseconds.
const settleTime = 1500;

const eagerLogin = { user: "user@example.org", password: "secret" };

let site;

function loginOf(name) {
  return { user: `${name}@example.org`, password: `secret of ${name}` };
}

function originOf(name) {
  return name.startsWith("insecure") ? `http://${name}.test` : site.address(name, "");
}

function knownLogins() {
  const saved = Object.keys(expected.saves).filter((name) => expected.saves[name].has);
  const names = [...Object.keys(expected.fills), ...saved, "stranger"];
  return names.map((name) => ({ site: originOf(name), ...loginOf(name) }));
}

function installEagerHost() {
  const script = join(folder, "eager");
  const host = join(import.meta.dirname, "eager_host.js");
  writeFileSync(script, `#!/bin/sh\nexec '${process.execPath}' '${host}'\n`);
  chmodSync(script, 0o755);
  return script;
}

async function open(name, what, host) {
  const home = join(folder, `${name}-${what}-home`);
  const opened = await start(join(build, "bin/cfsetup"), name, home, host, { control: site.address("control", "/plain") });
  // A name that doesn't exist: this machine's own pages would count as protected.
  await opened.context.route("http://*.test/**", async (route) => {
    const { pathname } = new URL(route.request().url());
    await route.fulfill({ response: await route.fetch({ url: `http://127.0.0.1:${site.port}${pathname}` }) });
  });
  return opened;
}

before(async () => {
  mkdirSync(folder, { recursive: true });
  site = await startSite();
});

after(() => site?.close());

function collectInputs() {
  const below = (tree) =>
    [...tree.querySelectorAll("*")].flatMap((each) => [each, ...(each.shadowRoot ? below(each.shadowRoot) : [])]);
  const inputs = below(document).filter((each) => each.matches("input:not([type=checkbox])"));
  return inputs.map(({ id, value, defaultValue }) => ({ id, value, defaultValue }));
}

async function inputsOf(page) {
  const each = await Promise.all(page.frames().map((frame) => frame.evaluate(collectInputs).catch(() => [])));
  return each.flat();
}

async function filledInputs(page) {
  return (await inputsOf(page)).filter(({ value, defaultValue }) => value !== defaultValue);
}

async function locate(page, selector) {
  return until(selector, async () => {
    for (const frame of page.frames()) if (await frame.locator(selector).count()) return frame.locator(selector);
  });
}

const implOf = (object) => object._connection.toImpl(object);

// Firefox hands keys to the process of the frame that the driver names, and that is the page's. Gives what
// takes the name of another frame; undefined in the other browser, which needs none.
const sessionOf = (page) => implOf(page).delegate._session;

async function pressInFrame(frame, target, key) {
  const codes = { Alt: "\uE00A", ArrowDown: "\uE015" };
  const values = key.split("+").map((each) => codes[each]);
  const keys = (type) => values.map((value) => ({ type, value }));
  const actions = [{ type: "key", id: "keys", actions: [...keys("keyDown"), ...keys("keyUp").reverse()] }];
  await target.focus();
  await sessionOf(frame.page()).send("input.performActions", { context: implOf(frame)._id, actions });
}

// What the user does: "click SELECTOR" or "press SELECTOR KEY", separated by commas.
async function act(page, steps = "") {
  for (const [what, selector, key] of steps.split(", ").filter(Boolean).map((step) => step.split(" "))) {
    const target = await locate(page, selector);
    const frame = await (await target.elementHandle()).ownerFrame();
    if (what === "click") await target.click();
    else if (frame !== page.mainFrame() && sessionOf(page)) await pressInFrame(frame, target, key);
    else await target.press(key);
  }
}

async function inNewTab(context, run) {
  const page = await context.newPage();
  try {
    await run(page);
  } finally {
    await page.close();
  }
}

// Runs `check` with each row of the table, many at a time. Some rows need the window for themselves.
async function eachRow(t, context, table, check) {
  const run = ([name, row]) =>
    t.test(name, () =>
      inNewTab(context, async (page) => {
        if (row.alone) await page.bringToFront();
        await check(page, name, row);
      }),
    );
  const rows = Object.entries(table);
  await Promise.all(rows.filter(([, row]) => !row.alone).map(run));
  for (const row of rows.filter(([, { alone }]) => alone)) await run(row);
}

async function checkFilling(page, name, { do: steps, filled }, values) {
  await page.goto(`${originOf(name)}/pages/${name}`);
  if (steps) await pause(settleTime / 3);
  await act(page, steps);
  const ids = filled.split(" ").filter(Boolean).sort().join(" ");
  const idsNow = async () => (await filledInputs(page)).map(({ id }) => id).sort().join(" ");
  await until(`filled in ${name}: "${ids}"`, async () => (await idsNow()) === ids).catch(() => {});
  await pause(settleTime);
  assert.equal(await idsNow(), ids);
  for (const { id, value } of await filledInputs(page)) assert.ok(Object.values(values).includes(value), `${id}: ${value}`);
}

// The frame is to be filled, and not the page around it.
const framed = { "frame-asked": "stranger" };

async function checkSaving(page, name, { do: steps, saved, has, shown = has, types = true }) {
  const typed = { user: "new@example.org", password: `new of ${name}` };
  await page.goto(`${originOf(name)}/pages/${name}`);
  if (shown) await until("the login", async () => (await filledInputs(page)).length === 2);
  for (const [id, text] of Object.entries(types ? typed : {})) {
    const input = page.locator(`#${id}`);
    await input.fill("");
    await input.pressSequentially(text);
    assert.equal(await input.inputValue(), text);
  }
  await act(page, steps);
  if (has && saved) await page.waitForURL(/\/welcome/);
  // The form must be seen to have gone, and an existing login is only replaced after a while.
  await pause(2 * settleTime);
  await page.goto(`${originOf(name)}/pages/form`);
  const valuesNow = async () => Object.fromEntries((await filledInputs(page)).map(({ id, value }) => [id, value]));
  const login = saved ? typed : has ? loginOf(name) : {};
  await until("the login", async () => isDeepStrictEqual(await valuesNow(), login)).catch(() => {});
  await pause(settleTime);
  assert.deepEqual(await valuesNow(), login);
}

// What must hold in the browser of that name.
function pagesIn(name) {
  let browser;
  let eager;

  before(async () => {
    const host = installHost(join(folder, name), build, knownLogins());
    [browser, eager] = await Promise.all([open(name, "real", host), open(name, "eager", installEagerHost())]);
  });

  after(() => Promise.all([browser?.context.close(), eager?.context.close()]));

  test("pages get the fillings that are right for them", { concurrency }, (t) =>
    eachRow(t, browser.context, expected.fills, (page, what, row) =>
      checkFilling(page, what, row, loginOf(framed[what] ?? what)),
    ));

  test("an agent that wants to fill everything doesn't get its way", { concurrency }, (t) =>
    eachRow(t, eager.context, expected.eagerFills, (page, what, row) => checkFilling(page, what, row, eagerLogin)));

  test("without leave to fill by itself the extension waits for the user", () =>
    inNewTab(eager.context, async (page) => {
      for (const setting of ["enabled", "autofillEnabled"]) {
        await page.goto(`${originOf("no-leave")}/pages/no-leave-${setting}`);
        await pause(settleTime);
        await checkFilling(page, "below", { filled: "" }, eagerLogin);
      }
      await checkFilling(page, "below", { do: "press #user Alt+ArrowDown", filled: "user password" }, eagerLogin);
    }));

  test("what the user has sent is saved when it was taken", { concurrency }, (t) =>
    eachRow(t, browser.context, expected.saves, checkSaving));
}

for (const name of Object.keys(browsers)) describe(`in ${name}`, () => pagesIn(name));
