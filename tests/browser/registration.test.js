// Compares, for each row of manifests.json, whether real browsers start the host and whether the doctor says
// that they do. Run by tests/browser/own-system, it also tries what concerns all users.
//
// A row is [what it shows, what lies where, the only browser if not both]. `user` and `system` are the
// members that replace those of a good manifest, with "origins" for the list of extensions, or the whole
// file, or null for none. `text` is the whole file made of a good one's text, with something replaced.
// `then` is a command that changes the user's file.
import assert from "node:assert/strict";
import { execFile, execFileSync } from "node:child_process";
import { chmodSync, cpSync, existsSync, mkdirSync, readFileSync, rmSync, symlinkSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { after, before, describe, test } from "node:test";
import { promisify } from "node:util";
import { browsers, environmentOf, obey, openControl } from "../../examples/stage/browsers.js";
import { startSite } from "../../examples/stage/site.js";
import { installHost, root, until } from "../../examples/stage/stage.js";

const table = JSON.parse(readFileSync(join(import.meta.dirname, "manifests.json"), "utf8"));
const build = process.env.CFHOST_BUILD ?? join(root, "build/release-test");
const results = join(root, "build/browser/registration");
const hosts = join(results, "host");
const ownSystem = process.env.CFHOST_OWN_SYSTEM === "yes";
const facts = {
  chromium: {
    list: "allowed_origins",
    origin: ["chrome-extension://", "/"],
    user: ".config/chromium/NativeMessagingHosts",
    system: "/etc/chromium/native-messaging-hosts",
    policies: "/etc/chromium/policies",
  },
  firefox: {
    list: "allowed_extensions",
    origin: ["", ""],
    user: ".mozilla/native-messaging-hosts",
    system: "/usr/lib/mozilla/native-messaging-hosts",
    policies: "/etc/firefox/policies",
  },
};

let site;

before(async () => {
  rmSync(results, { recursive: true, force: true });
  installHosts();
  site = await startSite();
});

after(() => site?.close());

// The host, and programs and files beside it that aren't quite one.
function installHosts() {
  const host = installHost(hosts, build);
  const write = (name, text) => writeFileSync(join(hosts, name), text, { mode: 0o755 });
  for (const mode of ["644", "777", "111"]) {
    cpSync(host, join(hosts, `mode-${mode}`));
    chmodSync(join(hosts, `mode-${mode}`), Number.parseInt(mode, 8));
  }
  installHost(join(hosts, "bräuche hier"), build);
  for (const folder of ["alone", "elsewhere"]) mkdirSync(join(hosts, folder));
  cpSync(host, join(hosts, "alone/cfhost"));
  symlinkSync("cfhost", join(hosts, "link"));
  symlinkSync("nowhere", join(hosts, "dangling"));
  write("script", `#!/bin/sh\nexec '${host}' "$@"\n`);
  write("elsewhere/script", `#!/bin/sh\nexec '${host}' "$@"\n`);
  write("no-interpreter", "#!/nowhere/sh\n");
  write("no-first-line", `exec '${host}' "$@"\n`);
  write("empty", "");
  write("quits", "#!/bin/sh\n");
}

// What the table writes as ${NAME}.
function namesOf(name) {
  const { id } = browsers[name];
  const [before, behind] = facts[name].origin;
  const otherList = facts[name === "chromium" ? "firefox" : "chromium"].list;
  const other = before + id.replace("koaa", "aaaa").replace("coffer@", "safe@") + behind;
  const origin = before + id + behind;
  return { id, ID: id.toUpperCase(), before, behind, origin, other, otherList, folder: hosts };
}

const fill = (text, names) => text.replaceAll(/\$\{(\w+)\}/g, (_, name) => names[name]);

// Long values, which the table only refers to.
const valueMakers = {
  repeat: ([text, count]) => text.repeat(count),
  times: ([value, count]) => Array(count).fill(value),
  nest: (depth) => JSON.parse("[".repeat(depth) + "]".repeat(depth)),
};
const grow = (_, value) => {
  const [maker] = value instanceof Object ? Object.keys(value) : [];
  return Object.hasOwn(valueMakers, maker) ? valueMakers[maker](value[maker]) : value;
};

// The content of a manifest, or null for none.
function contentOf(name, wanted, without) {
  if (wanted === null || typeof wanted === "string") return wanted;
  const names = namesOf(name);
  const good = { name: "com.orvanta.coffer", description: "Host", path: join(hosts, "cfhost"), type: "stdio" };
  const changes = JSON.parse(fill(JSON.stringify(wanted), names), grow);
  const { origins, ...members } = { ...good, origins: [names.origin], ...changes, [without]: undefined };
  return JSON.stringify({ ...members, [facts[name].list]: origins }, null, 2);
}

function textOf(name, [pattern, from = "", to = ""], encoding = "utf8") {
  return Buffer.from(fill(pattern, { good: contentOf(name, {}) }).replace(from, () => to), encoding);
}

function write(folder, content) {
  if (content === null) return "";
  const file = join(folder, "com.orvanta.coffer.json");
  mkdirSync(folder, { recursive: true });
  writeFileSync(file, content);
  return file;
}

function clear(...folders) {
  const all = folders.flatMap((folder) => [folder, `${folder}.real`]);
  execFileSync("sh", ["-c", 'chmod -Rf u+rwX "$@"; rm -rf "$@"', "sh", ...all]);
}

async function askDoctor(name, home, data) {
  const what = ["doctor", "--json", "--browser", name, "--extension-id", browsers[name].id];
  if (data && name === "chromium") what.push("--user-data-dir", data);
  const run = promisify(execFile)(join(build, "bin/cfsetup"), what, { env: environmentOf(home) });
  const { stdout, code = 0 } = await run.catch((failure) => failure);
  const report = JSON.parse(stdout);
  assert.equal(code, report.result === "good" ? 0 : 1);
  const faults = report.entries.filter((entry) => entry.severity === "fault").map((entry) => entry.id);
  return { works: code === 0, reason: faults.join(" ") };
}

// What the browser does and what the doctor says, of one row.
async function examine({ name, home, data, page, user }, row) {
  const { user: own = {}, system = null, text, encoding, without, then } = row;
  const folder = join(home, user);
  const places = ownSystem ? [folder, facts[name].system] : [folder];
  clear(...places);
  try {
    const file = write(folder, text ? textOf(name, text, encoding) : contentOf(name, own, without));
    if (ownSystem) write(facts[name].system, contentOf(name, system));
    if (then) execFileSync("sh", ["-ec", then], { env: { ...process.env, file, folder } });
    const [browser, doctor] = await Promise.all([
      page ? obey(page, "connect") : { works: false, reason: "no extension" },
      askDoctor(name, home, data),
    ]);
    return { browser, doctor };
  } finally {
    clear(...places);
  }
}

// Each member with each value, and without the member.
function rowsOfMembers() {
  return ["name", "description", "path", "type", "origins"].flatMap((member) => [
    [`"${member}" missing`, { without: member }],
    ...Object.entries(table.values).map(([what, value]) => [
      `"${member}" ${what}`,
      { user: { [member]: value } },
    ]),
  ]);
}

// The groups of rows that one start of the browser is for, and then the next. Chromium can be told to read
// its policies anew; Firefox reads them when it starts.
function startsOf(name) {
  const alone = [["user", {}]];
  const three = [...alone, ["all users", { user: null, system: {} }], ["both", { system: {} }]];
  const first = [{ what: "", rows: [...rowsOfMembers(), ...table.rows] }];
  const elsewhere = table.elsewhere[name].map(([what, user]) => ({ what, data: "own", user, rows: alone }));
  const policies = table.policies[name].map(([what, policies]) => ({ what, policies, rows: three }));
  if (ownSystem) first.push({ what: "places", rows: table.places });
  if (name === "firefox") return [first, ...[...elsewhere, ...(ownSystem ? policies : [])].map((group) => [group])];
  return [ownSystem ? [...first, ...policies] : first, elsewhere];
}

// Puts the files of policies there; gives what takes them away.
function writePolicies(name, policies) {
  const files = Object.entries(policies).map(([file, content]) => [join(facts[name].policies, file), content]);
  for (const [file, content] of files) {
    mkdirSync(dirname(file), { recursive: true });
    writeFileSync(file, typeof content === "string" ? content : JSON.stringify(content));
  }
  return () => files.forEach(([file]) => rmSync(file, { force: true }));
}

// Puts policies there and has Chromium read them, which it shows on its page of policies.
async function changePolicies(page, policies, number) {
  const mark = `http://group-${number}/`;
  const forget = writePolicies("chromium", { ...policies, "managed/mark.json": { NewTabPageLocation: mark } });
  await page.evaluate(() => chrome.send("reloadPolicies"));
  await page.getByText(mark).first().waitFor({ state: "attached" });
  return forget;
}

// Whether Firefox has let the extension in, of which it keeps a list in its profile.
async function isLetIn(profile) {
  const file = join(profile, "extensions.json");
  const text = await until("a list of extensions", () => existsSync(file) && readFileSync(file, "utf8"));
  return JSON.parse(text).addons.some(({ id }) => id === browsers.firefox.id);
}

// Starts the browser for groups of rows; hands each row's outcome to `tell`.
async function runStart(name, groups, tell) {
  const home = join(results, name);
  const [{ data, policies }] = groups;
  const place = { name, home, data: data && join(home, data) };
  clear(home);
  mkdirSync(home, { recursive: true });
  let forget = writePolicies(name, policies ?? {});
  const control = site.address("control", "/plain");
  const { context } = await browsers[name].open(home, { probe: true, control, data: place.data });
  try {
    const isThere = !policies || (await isLetIn(join(home, ".mozilla/firefox/test")));
    if (isThere) place.page = await openControl(context, control);
    const policyPage = name === "chromium" ? await context.newPage() : null;
    await policyPage?.goto("chrome://policy");
    for (const [i, { what, policies, user = facts[name].user, rows }] of groups.entries()) {
      if (policies && policyPage) forget = await changePolicies(policyPage, policies, i);
      for (const [row, places, only = name] of rows) {
        if (only === name) tell(what ? `${what}: ${row}` : row, await examine({ ...place, user }, places));
      }
      forget();
    }
  } finally {
    await context.close();
    forget();
  }
}

const said = (works) => (works ? "yes" : "no ");

// Tests all rows in one browser, and keeps the outcome in a file.
async function runTable(name) {
  const lines = [];
  for (const groups of startsOf(name)) {
    await runStart(name, groups, (what, { browser, doctor }) => {
      const mark = browser.works === doctor.works ? " " : "!";
      const verdicts = `browser ${said(browser.works)} doctor ${said(doctor.works)}`;
      lines.push(`${mark} ${what.padEnd(50)} ${verdicts} | ${browser.reason} | ${doctor.reason}`);
    });
  }
  const file = join(results, `${name}.txt`);
  writeFileSync(file, `${lines.join("\n")}\n`);
  const works = lines.filter((line) => line.includes("browser yes")).length;
  console.log(`${name}: works in ${works} of ${lines.length} rows; see ${file}`);
  if (!ownSystem) console.log(`${name}: all that concerns all users is NOT TESTED: there is no /etc to change`);
  assert.ok(works > 20 && works < lines.length - 20, "the browser says the same of all rows");
  const wrong = lines.filter((line) => line.startsWith("!"));
  assert.equal(wrong.length, 0, `the doctor disagrees in ${wrong.length} rows:\n${wrong.join("\n")}`);
}

describe("the doctor agrees", { concurrency: true }, () => {
  for (const name of Object.keys(browsers)) test(`with ${name}`, () => runTable(name));
});
