// Shows the coffer's state and its login for the page in front, and sends the user's commands.
import { fill, openSettings, watchState } from "../shared/coffer_link.js";

const element = (id) => document.getElementById(id);
const button = (method) => document.querySelector(`[data-method=${method}]`);

function statusOf({ connected, locked }) {
  if (!connected) return "Not connected";
  return locked ? "Locked" : "Unlocked";
}

function line(text, className) {
  return Object.assign(document.createElement("p"), { textContent: text, className });
}

function rowOf({ host, user, keys }) {
  const row = document.createElement("li");
  const names = document.createElement("div");
  names.append(line(user || "Without a user name", ""), line(host, "quiet"));
  const order = Object.assign(document.createElement("button"), { textContent: "Fill", className: "main" });
  order.addEventListener("click", async () => {
    await fill(keys);
    window.close();
  });
  row.append(names, order);
  return row;
}

// A row that stays must not be replaced under the mouse pointer.
let shown = "";

function showLogins(logins) {
  const now = JSON.stringify(logins);
  if (now === shown) return;
  shown = now;
  element("logins").replaceChildren(...logins.map(rowOf));
  element("none").hidden = logins.length > 0;
}

watchState((state) => {
  document.body.dataset.locked = state.locked;
  document.body.dataset.connected = state.connected;
  element("status").textContent = statusOf(state);
  element("page").hidden = state.locked;
  button("unlock-coffer").hidden = !state.locked;
  button("lock-coffer").hidden = state.locked;
  showLogins(state.logins);
});
element("settings").addEventListener("click", openSettings);
