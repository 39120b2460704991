// The extension, the real host and the development agent in a real browser.
import assert from "node:assert/strict";
import { existsSync, mkdirSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { setTimeout as pause } from "node:timers/promises";
import { envelopesOf, largestEnvelope, ReplyJoiner } from "../../examples/extension/transport/envelopes.js";
import { startSite } from "./site.js";
import { expectFilled, installHost, installWindowsHost, loginOf, openBrowser, processesOf, root, until } from "./stage.js";

const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");
const windowsBuild = join(root, "build/windows");
const results = join(root, "build/browser");

let site;
let host;
let browser;

before(async () => {
  mkdirSync(results, { recursive: true });
  site = await startSite();
  host = installHost(join(results, "host"), build);
  browser = await openBrowser(join(build, "bin/cfsetup"), host);
});

after(async () => {
  await browser?.close();
  site?.close();
});

// A test in a tab of its own. What it looked like is kept if it fails.
function scene(name, run) {
  test(name, async () => {
    const page = await browser.context.newPage();
    try {
      await run(page);
    } catch (error) {
      const picture = join(results, `${name.replaceAll(" ", "-")}.png`);
      await page.screenshot({ path: picture }).catch(() => {});
      error.message += `\nThe page is shown in ${picture}`;
      throw error;
    } finally {
      await page.close();
    }
  });
}

async function visit(page, name, path) {
  await page.goto(site.address(name, path));
}

async function order(method, locked) {
  const popup = await browser.context.newPage();
  await popup.goto(browser.popup);
  await popup.locator(`[data-method=${method}]`).click();
  await popup.locator(`body[data-locked="${locked}"]`).waitFor();
  await popup.close();
}

async function valuesOf(page, ...ids) {
  return Promise.all(ids.map((id) => page.locator(`#${id}`).inputValue()));
}

test("messages survive being cut and joined, within the limits of a frame", () => {
  for (const size of [0, 1, 6000, 6100, 100_000]) {
    const message = { method: "ä🔑".repeat(size) };
    const envelopes = [...envelopesOf(message, "m1")];
    const joiner = new ReplyJoiner();
    const joined = envelopes.map(({ id, fragment, msg }) =>
      joiner.add({ reply: "success", id, fragment, data: msg }),
    );
    assert.deepEqual(joined.pop(), message);
    assert.ok(joined.every((each) => each === undefined));
    assert.ok(envelopes.every((each) => JSON.stringify(each).length <= largestEnvelope));
    assert.equal(envelopes.length > 1, size >= 6000 / 1.5);
  }
});

scene("a plain form is filled", async (page) => {
  await visit(page, "plain", "/plain");
  await expectFilled(page, loginOf("plain"));
});

scene("of two forms the login form is filled", async (page) => {
  await visit(page, "two", "/two-forms");
  await expectFilled(page, loginOf("two"));
  assert.deepEqual(await valuesOf(page, "new-user", "new-password"), ["", ""]);
});

scene("a frame and the page around it get a login each", async (page) => {
  await visit(page, "outer", "/frame");
  await expectFilled(page, loginOf("outer"));
  await expectFilled(page.frameLocator("iframe"), loginOf("inner"));
});

scene("a form that comes later is filled", async (page) => {
  await visit(page, "dynamic", "/dynamic");
  await page.locator("#show").click();
  await expectFilled(page, loginOf("dynamic"));
});

scene("a read-only field stays as it is", async (page) => {
  await visit(page, "fixed", "/read-only");
  await until("the password", async () => {
    const [account, password] = await valuesOf(page, "account", "password");
    assert.equal(account, "fixed");
    return password === loginOf("fixed").password;
  });
});

scene("text beyond ASCII comes through both ways", async (page) => {
  await visit(page, "title", "/title");
  await expectFilled(page, loginOf("title"));
});

scene("a page of 400 inputs takes many frames each way", async (page) => {
  await visit(page, "many", "/many");
  assert.equal(await page.locator("input").count(), 400);
  await expectFilled(page, loginOf("many"));
});

scene("nothing is filled while locked, and all once unlocked", async (page) => {
  await order("lock-coffer", true);
  await visit(page, "plain", "/plain");
  // Many times what an answer takes.
  await pause(1500);
  assert.deepEqual(await valuesOf(page, "user", "password"), ["", ""]);
  await order("unlock-coffer", false);
  await expectFilled(page, loginOf("plain"));
});

scene("a submitted login is offered on the next visit", async (page) => {
  const login = { user: "new@example.org", password: "told once" };
  await visit(page, "saved", "/plain");
  await page.locator("#user").fill(login.user);
  await page.locator("#password").fill(login.password);
  await page.locator("#sign-in").click();
  await page.waitForURL("**/welcome");
  await visit(page, "saved", "/plain");
  await expectFilled(page, login);
});

scene("what the user has typed stays", async (page) => {
  await order("lock-coffer", true);
  await visit(page, "plain", "/plain");
  await page.locator("#user").fill("typed@example.org");
  await order("unlock-coffer", false);
  await expectFilled(page, { ...loginOf("plain"), user: "typed@example.org" });
});

scene("a host that was killed comes back", async (page) => {
  const killed = processesOf(host);
  assert.equal(killed.length, 1);
  process.kill(killed[0], "SIGKILL");
  await until("another host", () => {
    const running = processesOf(host);
    return running.length === 1 && running[0] !== killed[0];
  });
  await visit(page, "plain", "/plain");
  await expectFilled(page, loginOf("plain"));
});

test("no host is left when the browser has gone", async () => {
  assert.equal(processesOf(host).length, 1);
  await browser.close();
  browser = undefined;
  await until("the end of the host", () => processesOf(host).length === 0);
});

const hasWindowsHost = existsSync(join(windowsBuild, "bin/cfhost.exe"));
const reason = hasWindowsHost ? false : "build/windows has no cfhost.exe: scripts/test windows builds it";

test("the host for Windows fills the same form, under Wine", { skip: reason }, async () => {
  const folder = join(results, "windows-host");
  const script = installWindowsHost(folder, windowsBuild);
  const own = await openBrowser(join(build, "bin/cfsetup"), script);
  const page = await own.context.newPage();
  try {
    await visit(page, "plain", "/plain");
    await expectFilled(page, loginOf("plain"));
  } catch (error) {
    await page.screenshot({ path: join(results, "windows.png") }).catch(() => {});
    throw error;
  } finally {
    await own.close();
  }
  await until("the end of the host", () => processesOf(`${folder}/cfhost.exe`).length === 0);
});
