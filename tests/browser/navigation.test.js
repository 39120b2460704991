// A login reaches the document that asked for it and no other, however late the answer comes.
import assert from "node:assert/strict";
import { chmodSync, cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { setTimeout as pause } from "node:timers/promises";
import { browsers, reference, start } from "../../examples/stage/browsers.js";
import { startSite } from "../../examples/stage/site.js";
import { installHost, loginOf, root, until } from "../../examples/stage/stage.js";

const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");
const folder = join(root, "build/browser/navigation");
const delay = 500;

// The name that watch.js gives the document.
const nameOf = (frame) => frame.evaluate(() => String(performance.timeOrigin));

const leaving = {
  "a tab that has gone to another site": (page, site) => page.goto(site.address("other", "/plain")),
  "a tab that has gone on within the site": (page, site) => page.goto(site.address("plain", "/welcome")),
  "a tab that was reloaded without its form": async (page) => {
    await page.route("**/plain", (route) => route.fulfill({ body: "<p>nothing", contentType: "text/html" }));
    await page.reload();
  },
};

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

// What has to hold in the browser of that name.
function navigationIn(name) {
  let site;
  let browser;
  let received = [];

  before(async () => {
    mkdirSync(folder, { recursive: true });
    site = await startSite();
    const options = { folder: copyWatchedExtension(), control: site.address("control", "/plain") };
    const home = join(folder, `${name}-home`);
    browser = await start(join(build, "bin/cfsetup"), name, home, installDelayedHost(), options);
    browser.context.on("request", (request) => received.push(decodeURIComponent(request.url().split("?")[1] ?? "")));
  });

  after(async () => {
    await browser?.context.close();
    site?.close();
  });

  function receiversOf(login) {
    const lines = received.filter((line) => line.includes(loginOf(login).password));
    return lines.map((line) => line.split(" ")[0]);
  }

  // A slow machine may let the answer in before the page is left.
  function expectNoReceiverBut(asker) {
    assert.deepEqual(receiversOf("plain").filter((each) => each !== asker), [], received.join("\n"));
  }

  async function openPage(path) {
    const page = await browser.context.newPage();
    received = [];
    await page.goto(site.address("plain", path));
    return page;
  }

  test("a page that stays gets its late answer", async () => {
    const page = await openPage("/plain");
    await until("the answer", () => receiversOf("plain").length > 0);
    expectNoReceiverBut(await nameOf(page));
    await page.close();
  });

  for (const [what, leave] of Object.entries(leaving)) {
    test(`${what} gets nothing`, async () => {
      const page = await openPage("/plain");
      const asker = await nameOf(page);
      // Long enough to ask, and too short for the answer.
      await pause(delay / 4);
      await leave(page, site);
      await pause(delay * 2);
      expectNoReceiverBut(asker);
      await page.close();
    });
  }

  test("a frame that shows another site gets nothing", async () => {
    const page = await openPage("/welcome");
    await page.evaluate(() => document.body.append(Object.assign(document.createElement("iframe"), { src: "/plain" })));
    await page.frameLocator("iframe").locator("#password").waitFor();
    const asker = await nameOf(page.frames()[1]);
    await pause(delay / 4);
    await page.locator("iframe").evaluate((frame, address) => (frame.src = address), site.address("other", "/plain"));
    await pause(delay * 2);
    expectNoReceiverBut(asker);
    await page.close();
  });
}

for (const name of Object.keys(browsers)) describe(`in ${name}`, () => navigationIn(name));
