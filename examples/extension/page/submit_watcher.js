// Notices that the user sends a login, and that its form goes away afterwards. Only events that the browser
// marks as the user's count; a page can make up any others.
"use strict";

const submitWatcher = (() => {
  // How long a form must be gone, in milliseconds: some hide while they wait for their server.
  const goneTime = 1500;

  // A form that a script submits was sent by the user's last gesture, unless that is older than this.
  const gestureTime = 1000;

  const buttonInputs = "input[type=submit], input[type=button], input[type=image]";
  const buttons = `a, button, ${buttonInputs}, [role=button], [onclick]`;
  const fields = "input, textarea, select, label";

  // Inputs into which the user has typed.
  const typed = new WeakSet();

  let listeners = { sent() {}, gone() {}, takenBack() {} };
  let sentInputs = null;
  let goneTimer = null;
  let lastGesture = -Infinity;

  function isTypedPassword(input) {
    return pageReader.passwords.has(input) && typed.has(input) && input.value !== "";
  }

  function nameOf(element) {
    return element?.id || element?.getAttribute?.("name") || element?.textContent?.trim() || "form";
  }

  // What can be seen, and what the user has typed that belongs to it: steps of a login hide each other, and
  // banners and spinners cover it.
  function sentElements() {
    const seen = pageReader.inputElements();
    const password = seen.find(isTypedPassword);
    const isUser = (input) => !pageReader.passwords.has(input) && input.value !== "" && input.form === password.form;
    if (password !== undefined && seen.some(isUser)) return seen;
    const all = pageReader.inputElements((input) => typed.has(input) && input.value !== "");
    const form = (password ?? all.find(isTypedPassword))?.form;
    return all.filter((input) => seen.includes(input) || input.form === form);
  }

  // The page as the user sends it, before its scripts change anything; null without a typed password.
  function capture(by, form) {
    const elements = sentElements();
    const passwords = elements.filter(isTypedPassword);
    if (passwords.length === 0) return null;
    const clicked = nameOf(by);
    const target = form?.getAttribute("action") ? form.action : "";
    const event = { name: "submit", userState: "submit", clicked, submitted: clicked, target };
    const { page } = pageReader.describePage(event, elements);
    // A password that is shown as text is still a password.
    elements.forEach((element, at) => {
      if (page.inputs[at] && passwords.includes(element)) page.inputs[at].type = "password";
    });
    return { page, passwords };
  }

  function send(captured) {
    if (captured === null) return;
    sentInputs = captured.passwords;
    listeners.sent(captured.page);
  }

  function takeBack() {
    if (sentInputs === null) return;
    sentInputs = null;
    listeners.takenBack();
  }

  // A link that leads elsewhere sends nothing, unless a script handles the click instead.
  function leadsElsewhere(link) {
    const address = link.getAttribute("href") ?? "";
    return address !== "" && !/^(#|javascript:)/i.test(address) && !link.matches("[role=button]");
  }

  function isField(element) {
    return element.closest(fields) !== null && !element.matches(buttonInputs);
  }

  // Anything can serve as a button; what isn't a button element shows the hand pointer that people expect.
  function findButton(elements) {
    const isPressable = getComputedStyle(elements[0]).cursor === "pointer";
    return elements.find((each) => each.matches(buttons)) ?? (isPressable ? elements[0] : undefined);
  }

  // Runs after the page's own listeners, but before the page can go on. One of them may have kept the event
  // from getting here.
  function afterwards(event, then) {
    let isDone = false;
    function run() {
      if (!isDone) then();
      isDone = true;
    }
    window.addEventListener(event.type, run, { once: true });
    setTimeout(run);
  }

  function clicked(event) {
    const elements = event.composedPath().filter((each) => each instanceof Element);
    if (!event.isTrusted || elements.length === 0 || isField(elements[0])) return;
    lastGesture = performance.now();
    const button = findButton(elements);
    if (button === undefined) return;
    const captured = capture(button, button.form ?? button.closest("form"));
    const isLink = button.localName === "a" && leadsElsewhere(button);
    if (!isLink) send(captured);
    else afterwards(event, () => (event.defaultPrevented ? send(captured) : takeBack()));
  }

  function pressed(event) {
    const [input] = event.composedPath();
    if (!event.isTrusted || event.key !== "Enter" || event.isComposing) return;
    lastGesture = performance.now();
    if (input instanceof HTMLInputElement) send(capture(input, input.form));
  }

  function submitted(event) {
    const isByUser = event.isTrusted && performance.now() - lastGesture < gestureTime;
    if (isByUser && sentInputs === null) send(capture(event.submitter ?? event.target, event.target));
  }

  function typedInto(event) {
    if (!event.isTrusted) return;
    const [input] = event.composedPath();
    typed.add(input);
    // If the user types the password again, the site has refused it.
    if (sentInputs?.includes(input)) takeBack();
  }

  // `heard` is told when a page was sent, when its form has gone, or that it wasn't sent after all.
  function watch(heard) {
    listeners = heard;
    document.addEventListener("input", typedInto, true);
    document.addEventListener("click", clicked, true);
    document.addEventListener("keydown", pressed, true);
    document.addEventListener("submit", submitted, true);
  }

  function isGone() {
    return sentInputs !== null && !pageReader.inputElements().some((input) => pageReader.passwords.has(input));
  }

  // Call this after changes of the page.
  function look() {
    clearTimeout(goneTimer);
    if (!isGone()) return;
    goneTimer = setTimeout(() => {
      if (!isGone()) return;
      sentInputs = null;
      listeners.gone();
    }, goneTime);
  }

  return { look, watch };
})();
