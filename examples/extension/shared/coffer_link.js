// What the extension's own pages ask of the background.
const api = globalThis.browser ?? globalThis.chrome;

// These pages poll: they are seldom open, and never for long. In milliseconds.
const refreshTime = 250;

export function run(method) {
  return api.runtime.sendMessage({ type: "command", method });
}

export function fill(keys) {
  return api.runtime.sendMessage({ type: "fill", keys });
}

export function openSettings() {
  return api.runtime.openOptionsPage();
}

// Shows why there is no host, and enables what needs the host only while there is one.
function showConnection({ connected, reason }) {
  document.getElementById("problem").hidden = connected;
  document.getElementById("reason").textContent = reason || "The host isn't running.";
  for (const button of document.querySelectorAll("button[data-method]")) button.disabled = !connected;
}

// Calls `show` with the coffer's state now and then again from time to time, and makes the page's buttons work.
export function watchState(show) {
  for (const button of document.querySelectorAll("button[data-method]")) {
    button.addEventListener("click", () => run(button.dataset.method));
  }
  async function refresh() {
    const state = await api.runtime.sendMessage({ type: "state" });
    if (state === undefined) return;
    showConnection(state);
    show(state);
  }
  run("get-settings");
  refresh();
  setInterval(refresh, refreshTime);
}
