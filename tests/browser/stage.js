// A browser with the extension, and a host with the development agent that it is registered for, in
// folders of their own.
import { execFileSync } from "node:child_process";
import { chmodSync, cpSync, mkdirSync, mkdtempSync, readdirSync, readlinkSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { setTimeout as pause } from "node:timers/promises";
import { chromium } from "playwright-core";

export const root = resolve(import.meta.dirname, "../..");
const extension = join(root, "examples/extension");
const extensionId = "koaaajlhgidcladmjfjaiamebigekogg";

// A machine that builds something else meanwhile is slow.
export const patience = 30_000;

// The logins of the sites, as the agent's file has them.
export const logins = [
  { site: "plain.localhost", user: "ann@example.org", password: "plain secret" },
  { site: "two.localhost", user: "bob@example.org", password: "first form only" },
  { site: "outer.localhost", user: "outer@example.org", password: "around" },
  { site: "inner.localhost", user: "inner@example.org", password: "inside" },
  { site: "dynamic.localhost", user: "dyn@example.org", password: "came later" },
  { site: "fixed.localhost", user: "never@example.org", password: "with a fixed user" },
  { site: "title.localhost", user: "jörg@example.org", password: "l'été à 7 h – 密码 🔑" },
  { site: "many.localhost", user: "many@example.org", password: "one of four hundred" },
];

export function loginOf(site) {
  return logins.find((login) => login.site === `${site}.localhost`);
}

// Puts host and agent into `folder`; gives the path of the host.
export function installHost(folder, build) {
  mkdirSync(folder, { recursive: true });
  for (const name of ["cfhost", "cfagent.so"]) cpSync(join(build, "bin", name), join(folder, name));
  writeAgentFile(folder);
  return join(folder, "cfhost");
}

// The same for Windows: the path is that of a script that runs the host under Wine.
export function installWindowsHost(folder, build) {
  mkdirSync(folder, { recursive: true });
  for (const name of ["cfhost.exe", "cfagent.dll"]) {
    cpSync(join(build, "bin", name), join(folder, name));
  }
  writeAgentFile(folder);
  const script = join(folder, "cfhost");
  const run = `'${root}/scripts/wine-run' '${build}/wine' '${folder}/cfhost.exe'`;
  writeFileSync(script, `#!/bin/sh\nexec ${run} "$@"\n`);
  chmodSync(script, 0o755);
  return script;
}

function writeAgentFile(folder) {
  writeFileSync(join(folder, "cfagent.json"), JSON.stringify({ locked: false, logins }));
}

// Registers the host and starts the browser. `cfsetup` is the program's path.
export async function openBrowser(cfsetup, host) {
  const userData = mkdtempSync(join(tmpdir(), "cfhost-browser-"));
  const where = ["--user-data-dir", userData, "--extension-id", extensionId];
  execFileSync(cfsetup, ["install", ...where, "--host", host]);
  const context = await chromium.launchPersistentContext(userData, {
    executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
    chromiumSandbox: false,
    headless: false,
    viewport: { width: 800, height: 600 },
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
  context.setDefaultTimeout(patience);
  return {
    context,
    popup: `chrome-extension://${extensionId}/popup/popup.html`,
    async close() {
      await context.close();
      rmSync(userData, { recursive: true, force: true, maxRetries: 5 });
    },
  };
}

// The processes that run the program at `path`, or have it in their command line.
export function processesOf(path) {
  const found = [];
  for (const entry of readdirSync("/proc")) {
    if (!/^\d+$/.test(entry)) continue;
    try {
      const runs = readlinkSync(`/proc/${entry}/exe`) === path;
      const command = readFileSync(`/proc/${entry}/cmdline`, "utf8").replaceAll("\\", "/");
      if (runs || command.includes(path)) found.push(Number(entry));
    } catch {
      // It has ended meanwhile.
    }
  }
  return found;
}

// Waits until `condition` gives something true, and gives that.
export async function until(what, condition) {
  const end = Date.now() + patience;
  while (Date.now() < end) {
    const result = await condition();
    if (result) return result;
    await pause(50);
  }
  throw new Error(`not within ${patience / 1000} s: ${what}`);
}

// Waits until the login has come into the page's, or frame's, fields.
export async function expectFilled(page, { user, password }) {
  const show = async () => ({
    user: await page.locator("#user").inputValue(),
    password: await page.locator("#password").inputValue(),
  });
  await until(`the login of ${user} in the fields`, async () => {
    const shown = await show();
    return shown.user === user && shown.password === password;
  });
}
