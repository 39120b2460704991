// A login reaches the document that asked for it and no other, however late the answer comes.
import assert from "node:assert/strict";
import { chmodSync, cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { setTimeout as pause } from "node:timers/promises";
import { reference, start } from "../../examples/stage/browsers.js";
import { startSite } from "../../examples/stage/site.js";
import { installHost, loginOf, root, until } from "../../examples/stage/stage.js";

const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");
const folder = join(root, "build/browser/navigation");
const delay = 500;

let site;
let browser;
let received = [];

function installDelayedHost() {
  const host = installHost(folder, build);
  const script = join(folder, "delayed");
  const delayed = join(import.meta.dirname, "delayed_host.js");
  writeFileSync(script, `#!/bin/sh\nexec '${process.execPath}' '${delayed}' ${delay} '${host}'\n`);
  chmodSync(script, 0o755);
  return script;
}

function copyWatchedExtension() {
  const copy = join(folder, "extension");
  rmSync(copy, { recursive: true, force: true });
  cpSync(reference, copy, { recursive: true });
  cpSync(join(import.meta.dirname, "watch.js"), join(copy, "watch.js"));
  const manifest = JSON.parse(readFileSync(join(copy, "manifest.json"), "utf8"));
  manifest.content_scripts[0].js.unshift("watch.js");
  writeFileSync(join(copy, "manifest.json"), JSON.stringify(manifest));
  return copy;
}

before(async () => {
  mkdirSync(folder, { recursive: true });
  site = await startSite();
  const host = installDelayedHost();
  const options = { folder: copyWatchedExtension() };
  browser = await start(join(build, "bin/cfsetup"), "chromium", join(folder, "home"), host, options);
});

after(async () => {
  await browser?.context.close();
  site?.close();
});

// The name that watch.js gives the document.
const nameOf = (frame) => frame.evaluate(() => String(performance.timeOrigin));

function receiversOf(name) {
  const lines = received.filter((line) => line.includes(loginOf(name).password));
  return lines.map((line) => line.split(" ")[0]);
}

// On a slow machine the answer may come before the page is left.
function expectNoReceiverBut(asker) {
  assert.deepEqual(receiversOf("plain").filter((name) => name !== asker), [], received.join("\n"));
}

async function openPage(name, path) {
  const page = await browser.context.newPage();
  received = [];
  page.on("console", (message) => received.push(message.text()));
  await page.goto(site.address(name, path));
  return page;
}

test("a page that stays gets its late answer", async () => {
  const page = await openPage("plain", "/plain");
  await until("the answer", () => receiversOf("plain").length > 0);
  expectNoReceiverBut(await nameOf(page));
  await page.close();
});

const leaving = {
  "a tab that has gone to another site": (page) => page.goto(site.address("other", "/plain")),
  "a tab that has gone on within the site": (page) => page.goto(site.address("plain", "/welcome")),
  "a tab that was reloaded without its form": async (page) => {
    await page.route("**/plain", (route) => route.fulfill({ body: "<p>nothing", contentType: "text/html" }));
    await page.reload();
  },
};

for (const [what, leave] of Object.entries(leaving)) {
  test(`${what} gets nothing`, async () => {
    const page = await openPage("plain", "/plain");
    const asker = await nameOf(page);
    // Long enough for the request, and too short for the answer.
    await pause(delay / 4);
    await leave(page);
    await pause(delay * 2);
    expectNoReceiverBut(asker);
    await page.close();
  });
}

test("a frame that shows another site gets nothing", async () => {
  const page = await openPage("plain", "/welcome");
  await page.evaluate(() => document.body.append(Object.assign(document.createElement("iframe"), { src: "/plain" })));
  await page.frameLocator("iframe").locator("#password").waitFor();
  const asker = await nameOf(page.frames()[1]);
  await pause(delay / 4);
  await page.locator("iframe").evaluate((frame, address) => (frame.src = address), site.address("other", "/plain"));
  await pause(delay * 2);
  expectNoReceiverBut(asker);
  await page.close();
});
