// The pages that the browser visits. Each has a site of its own: every name below "localhost" means this
// machine.
import { existsSync, readFileSync } from "node:fs";
import { createServer } from "node:http";
import { join } from "node:path";
import { setTimeout as pause } from "node:timers/promises";

// How long a page waits for its style sheet, in milliseconds.
const lateTime = 700;

const style = `
  body { font: 16px/1.5 system-ui, sans-serif; margin: 3rem auto; max-width: 24rem; padding: 0 1rem;
         color: #1c2430; background: #f4f6f9; }
  main, form { display: grid; gap: .75rem; }
  form { background: #fff; border: 1px solid #d5dbe3; border-radius: .5rem; padding: 1.5rem; }
  label { display: grid; gap: .25rem; }
  input, button { font: inherit; padding: .5rem; }`;

const document = (title, body) => `<!doctype html>
<html lang="en"><head><meta charset="utf-8"><title>${title}</title><style>${style}</style></head>
<body><main><h1>${title}</h1>${body}</main></body></html>`;

const field = (label, attributes) => `<label>${label} <input ${attributes}></label>`;

const loginFields =
  field("E-mail address", 'name="user" id="user" type="email"') +
  field("Password", 'name="password" id="password" type="password"');

const loginForm =
  `<form method="post" action="/welcome" id="login">${loginFields}
   <button id="sign-in">Sign in</button></form>`;

const pages = {
  "/plain": () => document("Sign in", loginForm),
  "/frame": (port) =>
    document("A page around another", `${loginForm}
      <iframe src="http://inner.localhost:${port}/plain" width="360" height="420"></iframe>`),
  "/title": () => document("Anmeldung – ログイン 🔑", loginForm),
  "/late.css": () => "form { visibility: visible !important; }",
  "/welcome": () => document("Welcome", "<p>You are signed in.</p>"),
};

// The small pages of the tests, which name other sites with "PORT" for the port.
function smallPage(name, port) {
  const file = join(import.meta.dirname, "../../tests/browser/pages", `${name}.html`);
  return existsSync(file) ? document(name, readFileSync(file, "utf8").replaceAll("PORT", port)) : "";
}

function bodyOf(path, port) {
  return path.startsWith("/pages/") ? smallPage(path.slice("/pages/".length), port) : (pages[path]?.(port) ?? "");
}

// Serves the pages on the port `wanted`, or on a free one, until close() is called. Throws if it can't.
export async function startSite(wanted = 0) {
  const server = createServer(async (request, response) => {
    const path = new URL(request.url, "http://localhost").pathname;
    const body = bodyOf(path, server.address().port);
    request.resume();
    const isStyle = path.endsWith(".css");
    if (isStyle) await pause(lateTime);
    const type = isStyle ? "text/css" : "text/html; charset=utf-8";
    response.writeHead(body ? 200 : 404, { "content-type": type });
    response.end(body);
  });
  await new Promise((resolve, reject) => {
    server.on("error", reject);
    server.listen(wanted, "127.0.0.1", resolve);
  });
  const { port } = server.address();
  return {
    port,
    address: (site, path) => `http://${site}.localhost:${port}${path}`,
    close() {
      server.close();
      server.closeAllConnections();
    },
  };
}
