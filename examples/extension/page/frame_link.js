// The connection between this document and the background.
"use strict";

const frameLink = (() => {
  const api = globalThis.browser ?? globalThis.chrome;
  let port = null;
  let receive = () => {};

  function open() {
    port = api.runtime.connect();
    port.onMessage.addListener((message) => receive(message));
    // The background may have slept; the next message wakes it.
    port.onDisconnect.addListener(() => (port = null));
  }

  function post(message) {
    try {
      if (port === null) open();
      port.postMessage(message);
    } catch {
      // The extension has been replaced, and this script is on its own.
      port = null;
    }
  }

  // A document that the user can go back to is kept, and may keep its connection; but it has gone.
  window.addEventListener("pagehide", () => {
    port?.disconnect();
    port = null;
  });

  // `receiver` gets what the background says to this document.
  function listen(receiver) {
    receive = receiver;
    api.runtime.onMessage.addListener((message) => receive(message));
  }

  return { listen, post };
})();
