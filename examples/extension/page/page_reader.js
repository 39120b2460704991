// Describes the forms that a page shows, as the page object of a request. Runs in every frame, isolated
// from the page's own scripts.
"use strict";

const pageReader = (() => {
  const mostInputs = 5000;
  const longestText = 4096;
  // For all inputs of a page together, in UTF-16 units.
  const mostText = 4_000_000;
  const textTypes = new Set(["text", "email", "password", "tel", "url", "search", "number"]);

  // What the agent said about the inputs that it filled.
  const schemas = new WeakMap();

  // Inputs that have been password inputs; many pages can show them as text.
  const passwords = new WeakSet();

  const cut = (text) => String(text ?? "").slice(0, longestText);

  function* elementsBelow(root) {
    for (const element of root.querySelectorAll("*")) {
      yield element;
      if (element.shadowRoot) yield* elementsBelow(element.shadowRoot);
    }
  }

  // The document and the open shadow roots in it.
  function roots() {
    const shadows = [...elementsBelow(document)].map((element) => element.shadowRoot);
    return [document, ...shadows.filter((root) => root !== null && root !== undefined)];
  }

  // The inputs for text that a person can see, in the order of the page, and those that `isWanted` as well.
  function inputElements(isWanted = () => false) {
    const known = new Map();
    const inputs = [];
    for (const element of elementsBelow(document)) {
      if (inputs.length === mostInputs) break;
      if (element.localName !== "input" || !textTypes.has(element.type)) continue;
      if (element.type === "password") passwords.add(element);
      if (isWanted(element) || visibility.isSeen(element, known)) inputs.push(element);
    }
    return inputs;
  }

  function textOfIds(ids, root) {
    return ids.split(/\s+/).map((id) => root.getElementById?.(id)?.textContent.trim() ?? "").join(" ");
  }

  // The labels in a tree that name an input, by the id of that input. Asking each input for its labels
  // would walk through the page each time, and there may be thousands of inputs.
  function labelsIn(root) {
    const labels = [...root.querySelectorAll("label[for]")].reverse();
    return new Map(labels.map((label) => [label.htmlFor, label]));
  }

  // The text that a person reads beside the input.
  function labelOf(input, labels) {
    const label = input.closest("label") ?? (input.id && labels.get(input.id));
    return (
      label?.textContent?.trim() ||
      textOfIds(input.getAttribute("aria-labelledby") ?? "", input.getRootNode()).trim() ||
      input.getAttribute("aria-label") ||
      input.placeholder ||
      input.title
    );
  }

  // What the page calls the input: its label, and in brackets its `autocomplete`.
  function contextOf(input, labels) {
    const label = cut(labelOf(input, labels));
    const purpose = input.getAttribute("autocomplete")?.trim();
    return purpose ? `${label} [${purpose}]`.trim() : label;
  }

  function describeInput(input, forms, labels) {
    return {
      name: cut(input.name),
      value: cut(input.value),
      type: input.type,
      id: cut(input.id),
      readonly: input.readOnly || input.disabled ? "true" : "",
      context: cut(contextOf(input, labels)),
      form_context: cut(forms.get(input)),
      dbSchema: schemas.get(input) ?? "",
      dbvalue: "",
    };
  }

  // As much as all texts of a page may take together.
  function describeInputs(elements) {
    const forms = formTexts.describeForms(elements, [...elementsBelow(document)]);
    const labels = new Map();
    const inputs = [];
    let text = 0;
    for (const element of elements) {
      const root = element.getRootNode();
      if (!labels.has(root)) labels.set(root, labelsIn(root));
      const input = describeInput(element, forms, labels.get(root));
      text += Object.values(input).join("").length;
      if (text > mostText) break;
      inputs.push(input);
    }
    return inputs;
  }

  // The page object, and the elements that its inputs stand for, in the same order. `event` says why
  // the page is described; `source` and `sender` are for others to add.
  function describePage(event, elements = inputElements()) {
    const inputs = describeInputs(elements);
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
      inputs,
    };
    return { page, elements: elements.slice(0, inputs.length) };
  }

  return { describePage, inputElements, passwords, roots, schemas };
})();
