// The demo in a browser: fills a login page, and takes pictures of it, of the popup beside it, and of the
// settings.
// Usage: node demo.js BUILD-FOLDER PICTURE-FOLDER
import { join, resolve } from "node:path";
import { start } from "./browsers.js";
import { startSite } from "./site.js";
import { expectFilled, installHost, loginOf } from "./stage.js";

const [build, folder] = process.argv.slice(2).map((path) => resolve(path));
const site = await startSite();
const host = installHost(join(folder, "host"), build);
const browser = await start(join(build, "bin/cfsetup"), "chromium", join(folder, "home"), host);

async function takePicture(page, name, width) {
  await page.setViewportSize({ width, height: 1000 });
  await page.locator("body").screenshot({ path: join(folder, `${name}.png`) });
}

// Opens one of the extension's own pages while `page` stays in front.
async function openBeside(page, address) {
  const own = await browser.context.newPage();
  await own.goto(address);
  await page.bringToFront();
  return own;
}

try {
  const page = await browser.context.newPage();
  await page.goto(site.address("plain", "/plain"));
  await expectFilled(page, loginOf("plain"));
  const popup = await openBeside(page, browser.popup);
  await popup.getByRole("button", { name: "Fill" }).waitFor();
  await takePicture(popup, "popup", 320);
  const settings = await openBeside(page, browser.popup.replaceAll("popup", "settings"));
  await settings.getByText("pwdman.enabled").waitFor();
  await takePicture(settings, "settings", 640);
  // For the pictures the password is shown; it isn't a secret.
  await page.locator("#password").evaluate((input) => (input.type = "text"));
  await takePicture(page, "page", 480);
  console.log(`demo: the extension has filled the page; see page.png, popup.png and settings.png in ${folder}`);
} finally {
  await browser.context.close();
  site.close();
}
