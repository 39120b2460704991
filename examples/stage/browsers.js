// Chromium and Firefox with an extension, each with a home of its own.
import { execFileSync } from "node:child_process";
import { cpSync, mkdirSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { chromium, firefox } from "playwright-core";
import { root, timeout, until } from "./stage.js";

export const reference = join(root, "examples/extension");
const chromiumId = "koaaajlhgidcladmjfjaiamebigekogg";
const firefoxId = "coffer@orvanta.example";

// Firefox gives the pages of an extension random addresses unless a preference sets them.
const firefoxAddress = "6f1d1e2c-9d1c-4f5e-8a3e-0123456789ab";

export const browsers = {
  chromium: { id: chromiumId, open: openChromium },
  firefox: { id: firefoxId, open: openFirefox },
};

// The environment of a user with this home folder.
export function environmentOf(home) {
  const { XDG_CONFIG_HOME, ...environment } = process.env;
  return { ...environment, HOME: home };
}

export function register(cfsetup, name, home, host) {
  const what = ["--browser", name, "--extension-id", browsers[name].id, "--host", host];
  execFileSync(cfsetup, ["install", ...what], { env: environmentOf(home) });
}

// Registers the host for the browser in a new home folder, and starts the browser.
export function start(cfsetup, name, home, host, options) {
  rmSync(home, { recursive: true, force: true });
  register(cfsetup, name, home, host);
  return browsers[name].open(home, options);
}

// Writes an extension that carries out the orders of a page on the site "control" (obey). It does so in
// addition to what the reference extension does or, as a probe, instead of it. Returns its folder.
function writeExtension(home, probe, reference) {
  const folder = join(home, "extension");
  mkdirSync(folder, { recursive: true });
  if (!probe) cpSync(reference, folder, { recursive: true });
  for (const name of ["remote.js", "relay.js"]) cpSync(join(import.meta.dirname, name), join(folder, name));
  const manifest = JSON.parse(readFileSync(join(reference, "manifest.json"), "utf8"));
  const relay = { matches: ["http://control.localhost/*"], js: ["relay.js"], run_at: "document_start" };
  manifest.background.service_worker = "remote.js";
  manifest.background.scripts = probe ? ["remote.js"] : ["background.js", "remote.js"];
  manifest.content_scripts = probe ? [relay] : [...manifest.content_scripts, relay];
  // What names files that a probe lacks, for which Chromium refuses it.
  if (probe) for (const member of ["action", "icons", "options_ui"]) delete manifest[member];
  writeFileSync(join(folder, "manifest.json"), JSON.stringify(manifest));
  return folder;
}

// A page at the address `control`, which extensions of writeExtension() read orders from. A browser may
// show its first page before it has loaded the extension; throws if it doesn't within `limit`.
export async function openControl(context, control, limit = timeout) {
  const page = await context.newPage();
  await until("an extension that takes orders", async () => {
    await page.goto(control);
    return page.evaluate(() => document.documentElement.dataset.relay);
  }, limit);
  return page;
}

// Has the extension behind such a page carry out the order; returns its answer.
export async function obey(page, order, details) {
  const answer = await page.evaluate(
    (data) =>
      new Promise((resolve) => {
        const take = ({ data: { answer } }) => {
          if (!answer) return;
          removeEventListener("message", take);
          resolve(answer);
        };
        addEventListener("message", take);
        postMessage(data);
      }),
    { order, details },
  );
  if (answer.error) throw new Error(answer.error);
  return answer;
}

// Starts the browser with the extension in `folder`, or a probe. `data` is the browser's folder for its data.
// order() presses a button of the extension's popup and waits for the state that follows.
async function openChromium(home, { probe = false, folder = reference, data = join(home, ".config/chromium") } = {}) {
  const extension = probe ? writeExtension(home, probe, folder) : folder;
  const context = await chromium.launchPersistentContext(data, {
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    chromiumSandbox: false,
    headless: false,
    viewport: { width: 800, height: 600 },
    env: environmentOf(home),
    ignoreDefaultArgs: ["--disable-extensions"],
    args: [
      "--headless=new",
      `--load-extension=${extension}`,
      `--disable-extensions-except=${extension}`,
      "--disable-features=DisableLoadExtensionCommandLineSwitch",
      "--disable-quic",
      "--disable-background-networking",
      "--disable-component-update",
      "--disable-sync",
    ],
  });
  context.setDefaultTimeout(timeout);
  const popupAddress = `chrome-extension://${chromiumId}/popup/popup.html`;
  return {
    context,
    popup: popupAddress,
    async order(method, locked) {
      const popup = await context.newPage();
      await popup.goto(popupAddress);
      await popup.locator(`[data-method=${method}]`).click();
      await popup.locator(`body[data-locked="${locked}"]`).waitFor();
      await popup.close();
    },
  };
}

// The same. Pages of extensions are out of reach here, so the extension itself presses the popup's button;
// `control` is the address of the page that tells it to. press() does so with any element of the popup, with
// the page `front` in front, and waits until the popup has the element `then`.
async function openFirefox(
  home,
  { probe = false, folder = reference, control, data = join(home, ".mozilla/firefox/test") } = {},
) {
  const extension = writeExtension(home, probe, folder);
  mkdirSync(join(data, "extensions"), { recursive: true });
  const archive = join(data, "extensions", `${firefoxId}.xpi`);
  rmSync(archive, { force: true });
  execFileSync("cmake", ["-E", "tar", "cf", archive, "--format=zip", "."], { cwd: extension });
  const context = await firefox.launchPersistentContext(data, {
    channel: "moz-firefox",
    executablePath: process.env.FIREFOX ?? "/usr/bin/firefox-esr",
    viewport: { width: 800, height: 600 },
    env: environmentOf(home),
    firefoxUserPrefs: {
      "xpinstall.signatures.required": false,
      "extensions.webextensions.uuids": JSON.stringify({ [firefoxId]: firefoxAddress }),
    },
  });
  context.setDefaultTimeout(timeout);
  async function press(selector, then, front) {
    const page = await openControl(context, control);
    await front?.bringToFront();
    await obey(page, "press", { selector, then });
    await page.close();
  }
  return {
    context,
    press,
    order: (method, locked) => press(`[data-method=${method}]`, `body[data-locked="${locked}"]`),
  };
}
