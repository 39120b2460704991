// The connection between this document and the background.
"use strict";

const frameLink = (() => {
  const api = globalThis.browser ?? globalThis.chrome;
  let port = null;
  let receive = () => {};

  function open() {
    port = api.runtime.connect();
    port.onMessage.addListener((message) => receive(message));
    // The background may be asleep; the next message wakes it.
    port.onDisconnect.addListener(() => (port = null));
  }

  function post(message) {
    try {
      if (port === null) open();
      port.postMessage(message);
    } catch {
      // The extension has been updated, so this script has lost its background.
      port = null;
    }
  }

  // The browser may keep a document that the user can go back to, with its connection. For us it is gone.
  window.addEventListener("pagehide", () => {
    port?.disconnect();
    port = null;
  });

  // `receiver` gets what the background sends to this document.
  function listen(receiver) {
    receive = receiver;
    api.runtime.onMessage.addListener((message) => receive(message));
  }

  return { listen, post };
})();
