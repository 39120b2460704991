// The pages that the browser visits. Each has a site of its own: every name below "localhost" is this
// machine.
import { createServer } from "node:http";

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

const loginForm = (extra = "") =>
  `<form method="post" action="/welcome" id="login">${extra}${loginFields}
   <button id="sign-in">Sign in</button></form>`;

const signUpForm = `<form id="sign-up">
  ${field("New e-mail address", 'name="new-user" id="new-user" type="email"')}
  ${field("New password", 'name="new-password" id="new-password" type="password"')}
  <button>Create an account</button></form>`;

const dynamicPage = `<button id="show" type="button">Sign in</button><div id="place"></div>
  <script>
    document.getElementById("show").addEventListener("click", () => {
      document.getElementById("place").innerHTML = ${JSON.stringify(loginFields)};
    });
  </script>`;

const manyFields = Array.from({ length: 398 }, (_, i) =>
  field(`Field ${i}`, `name="field-${i}" id="field-${i}" type="text"`),
).join("");

const pages = {
  "/plain": () => document("Sign in", loginForm()),
  "/two-forms": () => document("Sign in or join", loginForm() + signUpForm),
  "/frame": (port) =>
    document("A page around another", `${loginForm()}
      <iframe src="http://inner.localhost:${port}/plain" width="360" height="420"></iframe>`),
  "/dynamic": () => document("One page", dynamicPage),
  "/read-only": () =>
    document("Sign in again", `<form>${field("Account", 'name="account" id="account" type="text" readonly value="fixed"')}
      ${field("Password", 'name="password" id="password" type="password"')}</form>`),
  "/title": () => document("Anmeldung – ログイン 🔑", loginForm()),
  "/many": () => document("A long form", loginForm(manyFields)),
  "/welcome": () => document("Welcome", "<p>You are signed in.</p>"),
};

// Serves the pages on `wanted`, or else on a free port, until close() is called. Throws if it can't.
export async function startSite(wanted = 0) {
  const server = createServer((request, response) => {
    const page = pages[new URL(request.url, "http://localhost").pathname];
    request.resume();
    response.writeHead(page ? 200 : 404, { "content-type": "text/html; charset=utf-8" });
    response.end(page ? page(server.address().port) : "");
  });
  await new Promise((resolve, reject) => {
    server.on("error", reject);
    server.listen(wanted, "127.0.0.1", resolve);
  });
  const { port } = server.address();
  return {
    address: (site, path) => `http://${site}.localhost:${port}${path}`,
    close() {
      server.close();
      server.closeAllConnections();
    },
  };
}
