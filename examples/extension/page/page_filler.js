// Puts what the agent knows into the inputs of a page.
"use strict";

const pageFiller = (() => {
  // Frameworks put a setter of their own on an element to see assignments, and then believe that they
  // made them; the prototype's sets the value, and the events tell of it.
  const setValue = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, "value").set;

  // What the user has typed stays; what an earlier answer has filled may be replaced.
  function mayChange(element) {
    return element.value === "" || pageReader.schemas.has(element);
  }

  // Whether the element is still what was described.
  function isAsDescribed(element, described) {
    return (
      element.isConnected &&
      element.type === described.type &&
      element.name === described.name &&
      element.id === described.id &&
      element.value === described.value
    );
  }

  document.addEventListener(
    "input",
    (event) => event.isTrusted && pageReader.schemas.delete(event.target),
    true,
  );

  function fillInput(element, value) {
    setValue.call(element, value);
    for (const name of ["input", "change"]) {
      element.dispatchEvent(new Event(name, { bubbles: true }));
    }
  }

  // `answers` are the inputs of a notification, in the order in which `described` went out; `elements`
  // are the page's in that order. Gives the number of inputs filled.
  function fill(answers, described, elements) {
    let filled = 0;
    for (const [at, element] of elements.entries()) {
      const answer = answers[at];
      // An answer without a schema is the input as it was sent.
      if (!answer?.dbSchema || element.readOnly || element.disabled) continue;
      if (answer.name !== described[at].name || !isAsDescribed(element, described[at])) continue;
      if (!mayChange(element) || element.value === answer.dbvalue) continue;
      fillInput(element, answer.dbvalue);
      pageReader.schemas.set(element, answer.dbSchema);
      filled += 1;
    }
    return filled;
  }

  return { fill };
})();
