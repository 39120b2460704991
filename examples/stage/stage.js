// A host with the development agent, in a folder of its own; and functions that wait.
import { chmodSync, cpSync, mkdirSync, readdirSync, readlinkSync, readFileSync, writeFileSync } from "node:fs";
import { join, resolve } from "node:path";
import { setTimeout as pause } from "node:timers/promises";

export const root = resolve(import.meta.dirname, "../..");

// Long, since a machine that builds something at the same time is slow.
export const timeout = 30_000;

// The logins of the sites, as the agent's file has them.
export const logins = [
  { site: "plain.localhost", user: "ann@example.org", password: "plain secret" },
  { site: "outer.localhost", user: "outer@example.org", password: "around" },
  { site: "inner.localhost", user: "inner@example.org", password: "inside" },
  { site: "title.localhost", user: "jörg@example.org", password: "l'été à 7 h – 密码 🔑" },
];

export function loginOf(site) {
  return logins.find((login) => login.site === `${site}.localhost`);
}

// Puts the host and the agent, with `known` logins, into `folder`; returns the path of the host.
export function installHost(folder, build, known = logins) {
  mkdirSync(folder, { recursive: true });
  for (const name of ["cfhost", "cfagent.so"]) cpSync(join(build, "bin", name), join(folder, name));
  writeAgentFile(folder, known);
  return join(folder, "cfhost");
}

// The same for Windows: the path is that of a script that runs the host under Wine.
export function installWindowsHost(folder, build) {
  mkdirSync(folder, { recursive: true });
  for (const name of ["cfhost.exe", "cfagent.dll"]) {
    cpSync(join(build, "bin", name), join(folder, name));
  }
  writeAgentFile(folder, logins);
  const script = join(folder, "cfhost");
  const run = `'${root}/scripts/wine-run' '${build}/wine' '${folder}/cfhost.exe'`;
  writeFileSync(script, `#!/bin/sh\nexec ${run} "$@"\n`);
  chmodSync(script, 0o755);
  return script;
}

function writeAgentFile(folder, logins) {
  writeFileSync(join(folder, "cfagent.json"), JSON.stringify({ locked: false, logins }));
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

// Waits until `condition` returns something true, and returns that.
export async function until(what, condition, limit = timeout) {
  const end = Date.now() + limit;
  while (Date.now() < end) {
    const result = await condition();
    if (result) return result;
    await pause(50);
  }
  throw new Error(`not within ${limit / 1000} s: ${what}`);
}

// Waits until the login is in the fields of the page or frame.
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
