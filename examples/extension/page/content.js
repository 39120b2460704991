// One document: asks what the coffer knows about it, fills its inputs, reports what the user sends.
"use strict";

(() => {
  // A sandboxed frame doesn't belong to the site in its address.
  if (self.origin === "null") return;

  // What the last request described. An answer to an earlier one is out of date.
  let asked = { request: 0, inputs: [], elements: [], state: [] };

  // Whether a site other than this one shows this document.
  function isAmongStrangers() {
    try {
      for (let each = window; each !== window.top; each = each.parent) {
        if (each.parent.origin !== self.origin) return true;
      }
      return false;
    } catch {
      // The browser keeps different origins from looking at each other.
      return true;
    }
  }

  // A page from an unprotected connection can come from anyone.
  const needsUser = !isSecureContext || isAmongStrangers();

  function stateOf(element) {
    return `${element.type} ${element.readOnly || element.matches(":disabled")}`;
  }

  function send(method, event) {
    const { page, elements } = pageReader.describePage(event);
    const state = elements.map(stateOf);
    asked = { request: asked.request + 1, inputs: page.inputs, elements, state };
    if (elements.length > 0) frameLink.post({ type: "page", method, request: asked.request, needsUser, page });
  }

  function ask(name) {
    send("get-info-for-page", { name, userState: "load" });
  }

  function askByUser(clicked) {
    send("drop-down", { name: "keydown", userState: "drop-down", clicked });
  }

  function isAsAsked(elements) {
    return (
      elements.length === asked.elements.length &&
      elements.every((each, at) => each === asked.elements[at] && stateOf(each) === asked.state[at])
    );
  }

  function look() {
    if (!isAsAsked(pageReader.inputElements())) ask("mutation");
    submitWatcher.look();
  }

  document.addEventListener(
    "keydown",
    (event) => {
      const [target] = event.composedPath();
      const wanted = event.altKey && event.key === "ArrowDown";
      if (event.isTrusted && wanted && target instanceof HTMLInputElement) askByUser(target.id || target.name);
    },
    true,
  );

  const receivers = {
    "ask-again": () => ask("unlock"),
    "fill-by-user": () => askByUser(""),
    fill({ request, inputs, byUser }) {
      if (request === asked.request) pageFiller.fill(inputs, asked, byUser);
    },
  };

  frameLink.listen((message) => {
    if (Object.hasOwn(receivers, message.type)) receivers[message.type](message);
  });
  submitWatcher.watch({
    sent: (page) => frameLink.post({ type: "sent", page }),
    gone: () => frameLink.post({ type: "form-gone" }),
    takenBack: () => frameLink.post({ type: "taken-back" }),
  });
  // A page that the user has gone back to has lost its connection.
  window.addEventListener("pageshow", ({ persisted }) => persisted && ask("load"));
  // The page that comes next shows whether the login was accepted, whatever inputs it has.
  frameLink.post({ type: "shown" });
  changeWatcher.watch(look, pageReader.roots);
  ask("load");
})();
