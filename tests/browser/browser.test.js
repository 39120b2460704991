// The extension, the real host and the development agent in real browsers.
import assert from "node:assert/strict";
import { existsSync, mkdirSync } from "node:fs";
import { join } from "node:path";
import { after, before, describe, test } from "node:test";
import { setTimeout as pause } from "node:timers/promises";
import { browsers, start } from "../../examples/stage/browsers.js";
import { startSite } from "../../examples/stage/site.js";
import { expectFilled, installHost, installWindowsHost, loginOf, processesOf, root, until } from "../../examples/stage/stage.js";

const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");
const windowsBuild = join(root, "build/windows");
const results = join(root, "build/browser");

let site;

before(async () => {
  mkdirSync(results, { recursive: true });
  site = await startSite();
});

after(() => site?.close());

function startIn(name, host) {
  const home = join(results, `${name}-home`);
  return start(join(build, "bin/cfsetup"), name, home, host, { control: site.address("control", "/plain") });
}

async function visit(page, name, path) {
  await page.goto(site.address(name, path));
}

async function valuesOf(page, ...ids) {
  return Promise.all(ids.map((id) => page.locator(`#${id}`).inputValue()));
}

// What must hold in the browser of that name.
function scenesIn(name) {
  let host;
  let browser;

  before(async () => {
    host = installHost(join(results, `${name}-host`), build);
    browser = await startIn(name, host);
  });

  after(() => browser?.context.close());

  // Runs a test in a tab of its own. If it fails, keeps a picture of the tab.
  function scene(what, run) {
    test(what, async () => {
      const page = await browser.context.newPage();
      try {
        await run(page);
      } catch (error) {
        const picture = join(results, `${name}-${what.replaceAll(" ", "-")}.png`);
        await page.screenshot({ path: picture }).catch(() => {});
        error.message += `\nThe page is shown in ${picture}`;
        throw error;
      } finally {
        await page.close();
      }
    });
  }

  scene("a plain form is filled", async (page) => {
    await visit(page, "plain", "/plain");
    await expectFilled(page, loginOf("plain"));
  });

  scene("text beyond ASCII comes through both ways", async (page) => {
    await visit(page, "title", "/title");
    await expectFilled(page, loginOf("title"));
  });

  scene("nothing is filled while locked, and all once unlocked", async (page) => {
    await browser.order("lock-coffer", true);
    await visit(page, "plain", "/plain");
    // Many times as long as an answer takes.
    await pause(1500);
    assert.deepEqual(await valuesOf(page, "user", "password"), ["", ""]);
    await browser.order("unlock-coffer", false);
    await expectFilled(page, loginOf("plain"));
  });

  scene("what the user has typed stays", async (page) => {
    await browser.order("lock-coffer", true);
    await visit(page, "plain", "/plain");
    await page.locator("#user").fill("typed@example.org");
    await browser.order("unlock-coffer", false);
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
    await browser.context.close();
    browser = undefined;
    await until("the end of the host", () => processesOf(host).length === 0);
  });
}

for (const name of Object.keys(browsers)) describe(`in ${name}`, () => scenesIn(name));

const hasWindowsHost = existsSync(join(windowsBuild, "bin/cfhost.exe"));
const reason = hasWindowsHost ? false : "build/windows has no cfhost.exe: scripts/test windows builds it";

test("the host for Windows fills the same form, under Wine", { skip: reason }, async () => {
  const folder = join(results, "windows-host");
  const script = installWindowsHost(folder, windowsBuild);
  const own = await startIn("chromium", script);
  const page = await own.context.newPage();
  try {
    await visit(page, "plain", "/plain");
    await expectFilled(page, loginOf("plain"));
  } catch (error) {
    await page.screenshot({ path: join(results, "windows.png") }).catch(() => {});
    throw error;
  } finally {
    await own.context.close();
  }
  await until("the end of the host", () => processesOf(`${folder}/cfhost.exe`).length === 0);
});
