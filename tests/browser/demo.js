// The first scene alone, for people: a login page that gets filled, and a picture of it.
// Usage: node demo.js BUILD-FOLDER PICTURE
import { dirname, join, resolve } from "node:path";
import { startSite } from "./site.js";
import { expectFilled, installHost, loginOf, openBrowser } from "./stage.js";

const [build, picture] = process.argv.slice(2).map((path) => resolve(path));
const site = await startSite();
const host = installHost(join(dirname(picture), "host"), build);
const browser = await openBrowser(join(build, "bin/cfsetup"), host);
try {
  const page = await browser.context.newPage();
  await page.goto(site.address("plain", "/plain"));
  await expectFilled(page, loginOf("plain"));
  // The point of the demo is to be seen: nothing secret is on the page.
  await page.locator("#password").evaluate((input) => (input.type = "text"));
  await page.screenshot({ path: picture });
  console.log(`demo: the extension has filled the page; see ${picture}`);
} finally {
  await browser.close();
  site.close();
}
