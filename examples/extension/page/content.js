// One frame of a page: asks what the coffer knows of it, fills its inputs, reports what is submitted.
"use strict";

(() => {
  // What goes over the network unprotected can come from anybody, and a sandboxed frame isn't of the
  // site that its address names.
  if (!isSecureContext || self.origin === "null") return;

  const api = globalThis.browser ?? globalThis.chrome;

  // An answer for the page that this frame showed before must not fill this one.
  const documentId = crypto.randomUUID();

  // How long a page must be at rest before it is described again.
  const restTime = 150;

  let asked = { inputs: [], elements: [] };
  let restTimer = null;

  function send(method, event) {
    const { page, elements } = pageReader.describePage(event);
    if (elements.length === 0) return;
    if (method !== "save-info-from-page") asked = { inputs: page.inputs, elements };
    // The extension may have been replaced; then this script is on its own.
    api.runtime.sendMessage({ type: "page", method, documentId, page }).catch(() => {});
  }

  function ask(name) {
    send("get-info-for-page", { name, userState: "load" });
  }

  function isSameSet(elements) {
    return (
      elements.length === asked.elements.length &&
      elements.every((element, at) => element === asked.elements[at])
    );
  }

  // Forms that scripts add or show later.
  function pageChanged() {
    clearTimeout(restTimer);
    restTimer = setTimeout(() => {
      if (!isSameSet(pageReader.inputElements())) ask("mutation");
    }, restTime);
  }

  function hasPassword(elements) {
    return elements.some((element) => element.type === "password" && element.value !== "");
  }

  function nameOf(element) {
    return element?.id || element?.getAttribute?.("name") || element?.textContent?.trim() || "form";
  }

  function reportSubmit(by, target) {
    if (!hasPassword(pageReader.inputElements())) return;
    const submitted = nameOf(by);
    send("save-info-from-page", {
      name: "submit",
      userState: "submit",
      clicked: submitted,
      submitted,
      target,
    });
  }

  document.addEventListener(
    "submit",
    (event) => reportSubmit(event.submitter ?? event.target, event.target.action),
    true,
  );

  // Pages without a form send their inputs by script.
  document.addEventListener(
    "click",
    (event) => {
      const button = event.target.closest?.("button, input[type=button], input[type=submit]");
      if (event.isTrusted && button && button.form === null) reportSubmit(button, "");
    },
    true,
  );

  document.addEventListener(
    "keydown",
    (event) => {
      const wanted = event.altKey && event.key === "ArrowDown";
      if (event.isTrusted && wanted && event.target instanceof HTMLInputElement) {
        send("drop-down", { name: "keydown", userState: "drop-down", clicked: nameOf(event.target) });
      }
    },
    true,
  );

  api.runtime.onMessage.addListener((message) => {
    if (message.type === "ask-again") ask("unlock");
    if (message.type === "fill" && message.documentId === documentId) {
      pageFiller.fill(message.inputs, asked.inputs, asked.elements);
    }
  });

  new MutationObserver(pageChanged).observe(document, {
    childList: true,
    subtree: true,
    attributes: true,
    attributeFilter: ["type", "style", "class", "hidden"],
  });
  ask("load");
})();
