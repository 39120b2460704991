// Shows the settings that the agent reports. Only the agent changes them.
import { watchState } from "../shared/coffer_link.js";

function rowOf([name, value]) {
  const row = document.createElement("tr");
  for (const text of [name, value]) row.insertCell().textContent = text;
  return row;
}

watchState(({ connected, settings, fillsUnasked }) => {
  const rows = Object.entries(settings).sort(([a], [b]) => (a < b ? -1 : 1));
  document.getElementById("settings").replaceChildren(...rows.map(rowOf));
  document.getElementById("filling").hidden = !connected;
  document.getElementById("filling").textContent = fillsUnasked
    ? "Logins are filled when a page shows their form."
    : "Logins are filled only when you ask: with Alt+Down in a field, or from the toolbar.";
});
