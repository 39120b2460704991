// Shows what the agent says of the coffer, and sends it the user's orders.
const api = globalThis.browser ?? globalThis.chrome;

// Nothing is pushed here: the popup is seldom open, and never for long.
const refreshTime = 250;

function statusText({ connected, reason, locked }) {
  if (!connected) return reason || "The host isn't running.";
  return locked ? "The coffer is locked." : "The coffer is unlocked.";
}

function settingRow([name, value]) {
  const row = document.createElement("tr");
  for (const text of [name, value]) row.insertCell().textContent = text;
  return row;
}

async function refresh() {
  const state = await api.runtime.sendMessage({ type: "state" });
  document.body.dataset.locked = state.locked;
  document.body.dataset.connected = state.connected;
  document.getElementById("status").textContent = statusText(state);
  const rows = Object.entries(state.settings).sort(([a], [b]) => (a < b ? -1 : 1));
  document.getElementById("settings").replaceChildren(...rows.map(settingRow));
}

for (const button of document.querySelectorAll("button[data-method]")) {
  button.addEventListener("click", () =>
    api.runtime.sendMessage({ type: "command", method: button.dataset.method }),
  );
}
api.runtime.sendMessage({ type: "command", method: "get-settings" });
refresh();
setInterval(refresh, refreshTime);
