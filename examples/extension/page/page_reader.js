// Gathers what a page shows of forms into the page object that requests carry. Runs in every frame,
// beside the page's own scripts but apart from them.
"use strict";

const pageReader = (() => {
  const mostInputs = 1000;
  const longestText = 4096;
  const textTypes = new Set(["text", "email", "password", "tel", "url", "search", "number"]);

  // What the agent said of the inputs that it filled.
  const schemas = new WeakMap();

  const cut = (text) => String(text ?? "").slice(0, longestText);

  function isVisible(element) {
    return element.getClientRects().length > 0;
  }

  function inputElements() {
    return [...document.querySelectorAll("input")]
      .filter((input) => textTypes.has(input.type) && isVisible(input))
      .slice(0, mostInputs);
  }

  // What the page calls the input: the text that a person reads beside it.
  function contextOf(input) {
    const label = input.labels?.[0]?.textContent.trim();
    return label || input.getAttribute("aria-label") || input.placeholder || "";
  }

  // Forms without a name are told apart by their place in the page.
  function formContextOf(input) {
    const form = input.form;
    if (form === null) return "";
    return form.id || form.getAttribute("name") || `form-${[...document.forms].indexOf(form)}`;
  }

  function describeInput(input) {
    return {
      name: cut(input.name),
      value: cut(input.value),
      type: input.type,
      id: cut(input.id),
      readonly: input.readOnly || input.disabled ? "true" : "",
      context: cut(contextOf(input)),
      form_context: cut(formContextOf(input)),
      dbSchema: schemas.get(input) ?? "",
      dbvalue: "",
    };
  }

  // The page object, and the elements that its inputs stand for, in the same order. `event` says why
  // the page is described; `source` and `sender` are for others to add.
  function describePage(event) {
    const elements = inputElements();
    const filled = elements.filter((input) => input.value !== "").length;
    const forms = new Set(elements.map((input) => input.form));
    const page = {
      title: cut(document.title),
      context: cut(document.querySelector("h1")?.textContent.trim()),
      user_state: event.userState,
      document_state: document.readyState,
      before_url: cut(document.referrer),
      after_url: cut(event.target),
      source_event: event.name,
      source_context: window === window.top ? "top" : "frame",
      click_source: cut(event.clicked),
      submit_source: cut(event.submitted),
      fHasMultipleForms: forms.size > 1 ? 1 : 0,
      fIsPartiallyFilled: filled > 0 && filled < elements.length ? 1 : 0,
      inputs: elements.map(describeInput),
    };
    return { page, elements };
  }

  return { describePage, inputElements, schemas };
})();
