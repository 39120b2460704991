// Runs in the background of an extension that a test has changed: carries out what the test's page asks for.
const api = globalThis.browser ?? globalThis.chrome;

// Whether the host sends anything once it is connected, with the browser's error if there is one.
function connect() {
  return new Promise((resolve) => {
    const port = api.runtime.connectNative("com.orvanta.coffer");
    port.onMessage.addListener(() => {
      port.disconnect();
      resolve({ works: true, reason: "" });
    });
    port.onDisconnect.addListener(() => {
      resolve({ works: false, reason: (port.error ?? api.runtime.lastError)?.message ?? "" });
    });
    port.postMessage({ id: "1", fragment: "final", msg: btoa('{"method":"get-settings"}') });
  });
}

// Presses an element of the popup once it is there, and waits until the popup shows what is to follow.
async function press({ selector, then = "body" }) {
  const frame = document.createElement("iframe");
  frame.src = api.runtime.getURL("popup/popup.html");
  const loaded = new Promise((resolve) => frame.addEventListener("load", resolve));
  document.body.append(frame);
  await loaded;
  const popup = frame.contentDocument;
  const find = async (wanted) => {
    while (!popup.querySelector(wanted)) await new Promise((go) => setTimeout(go, 50));
    return popup.querySelector(wanted);
  };
  (await find(selector)).click();
  await find(then);
  frame.remove();
  return {};
}

const orders = { connect, press };

api.runtime.onMessage.addListener(({ type, order, details }, sender, answer) => {
  if (type !== "order") return false;
  orders[order](details).then(answer, (error) => answer({ error: String(error) }));
  return true;
});
