// The popup beside a page, and a background that sleeps and wakes up.
import assert from "node:assert/strict";
import { renameSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { start } from "../../examples/stage/browsers.js";
import { startSite } from "../../examples/stage/site.js";
import { expectFilled, installHost, loginOf, processesOf, root, until } from "../../examples/stage/stage.js";

const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");

let site;
let host;
let browser;
let page;

before(async () => {
  site = await startSite();
  host = installHost(join(root, "build/browser/popup"), build);
  browser = await start(join(build, "bin/cfsetup"), "chromium", join(root, "build/browser/popup-home"), host);
  page = await browser.context.newPage();
});

after(async () => {
  await browser?.context.close();
  site?.close();
});

// Opens the popup as a user does: beside the page, which stays in front.
async function withPopup(use) {
  const popup = await browser.context.newPage();
  await popup.goto(browser.popup);
  await page.bringToFront();
  await use(popup);
  await popup.close();
}

const press = (popup, selector) => popup.locator(selector).dispatchEvent("click");

test("the popup offers the logins of the page in front, and fills a stranger's frame", async () => {
  await page.goto(site.address("outer", "/frame"));
  await expectFilled(page, loginOf("outer"));
  const frame = page.frameLocator("iframe");
  await withPopup(async (popup) => {
    const row = (name) => `li:has-text("${loginOf(name).user}"):has-text("${name}.localhost:")`;
    await popup.locator(row("outer")).waitFor();
    await popup.locator(row("inner")).waitFor();
    assert.equal(await frame.locator("#password").inputValue(), "");
    await press(popup, `${row("inner")} button`);
    await expectFilled(frame, loginOf("inner"));
  });
});

test("the popup fills a form that the agent is in doubt about", async () => {
  await page.goto(site.address("plain", "/pages/doubt-refused"));
  await withPopup(async (popup) => {
    await press(popup, "li button");
    await expectFilled(page, loginOf("plain"));
  });
});

test("the popup offers what can be done, and says why nothing can", async () => {
  const offered = (popup) =>
    popup.locator("[data-method]:visible").evaluateAll((all) => all.filter((each) => !each.disabled).map((each) => each.dataset.method));
  const shows = (popup, ...methods) =>
    until(`${methods} in the popup`, async () => (await offered(popup)).join() === methods.join());
  await withPopup(async (popup) => {
    await shows(popup, "lock-coffer", "open-coffer");
    await press(popup, "[data-method=lock-coffer]");
    await shows(popup, "unlock-coffer", "open-coffer");
    await press(popup, "[data-method=unlock-coffer]");
    await shows(popup, "lock-coffer", "open-coffer");
    renameSync(host, `${host}.gone`);
    process.kill(processesOf(host)[0], "SIGKILL");
    await shows(popup);
    assert.match(await popup.locator("#problem").innerText(), /\S+\s+Run cfsetup doctor/);
    renameSync(`${host}.gone`, host);
    await shows(popup, "lock-coffer", "open-coffer");
  });
});

test("in Firefox the popup fills too", async () => {
  const folder = join(root, "build/browser/popup-firefox");
  const options = { control: site.address("control", "/plain") };
  const own = await start(join(build, "bin/cfsetup"), "firefox", `${folder}-home`, installHost(folder, build), options);
  try {
    const outer = await own.context.newPage();
    await outer.goto(site.address("outer", "/frame"));
    await expectFilled(outer, loginOf("outer"));
    await own.press("li:nth-child(2) button", "body", outer);
    await expectFilled(outer.frameLocator("iframe"), loginOf("inner"));
  } finally {
    await own.context.close();
  }
});

test("a worker that was put to sleep wakes for the next page", async () => {
  const [asleep] = processesOf(host);
  await page.goto(site.address("plain", "/welcome"));
  const session = await browser.context.newCDPSession(page);
  await session.send("ServiceWorker.enable");
  await session.send("ServiceWorker.stopAllWorkers");
  await until("the end of its host", () => !processesOf(host).includes(asleep));
  await page.goto(site.address("plain", "/plain"));
  await expectFilled(page, loginOf("plain"));
});

