// Fills the inputs of a page with what the agent knows.
"use strict";

const pageFiller = (() => {
  // Some frameworks put a setter of their own on an element, and take every assignment through it as
  // their own. The prototype's setter avoids that; the events then announce the value.
  const setValue = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, "value").set;

  // Purposes of inputs, in `autocomplete`, that aren't a login.
  const otherPurpose = new RegExp(
    "^(name|(honorific|given|additional|family|organization)-.*|organization|new-password|one-time-code" +
      "|street-address|address-.*|country(-name)?|postal-code|cc-.*|transaction-.*|language|bday(-.*)?" +
      "|sex|url|photo|impp)$",
    "i",
  );

  // The last word is the purpose, except that "webauthn" may follow it.
  function isForAnother(element) {
    const words = (element.getAttribute("autocomplete") ?? "").trim().split(/\s+/);
    return otherPurpose.test(words.filter((word) => word.toLowerCase() !== "webauthn").pop() ?? "");
  }

  function fits(element, value) {
    if (element.maxLength >= 0 && value.length > element.maxLength) return false;
    return element.type !== "number" || /^\d+$/.test(value);
  }

  // A password may only be filled in where the page hides it.
  function takes(element, { dbSchema, dbvalue }) {
    const isPassword = element.type === "password";
    return (dbSchema === "password") === isPassword && !isForAnother(element) && fits(element, dbvalue);
  }

  // What the user has typed stays, unless the user asks; what an earlier answer has filled in may be replaced.
  function mayChange(element, byUser) {
    if (element.readOnly || element.matches(":disabled")) return false;
    return byUser || element.value === "" || pageReader.schemas.has(element);
  }

  // Whether the element is still as it was described.
  function isAsDescribed(element, described) {
    return (
      element.isConnected &&
      ["type", "name", "id", "value"].every((name) => element[name] === described[name])
    );
  }

  function forgetSchema(event) {
    if (event.isTrusted) pageReader.schemas.delete(event.composedPath()[0]);
  }
  document.addEventListener("input", forgetSchema, true);

  function fillInput(element, value) {
    setValue.call(element, value);
    for (const name of ["input", "change"]) {
      element.dispatchEvent(new Event(name, { bubbles: true, composed: name === "input" }));
    }
  }

  // `answers` are the inputs of a notification, in the order of the request's `asked.inputs`;
  // `asked.elements` are the page's elements in that order. `byUser`: whether the user has asked for it.
  function fill(answers, asked, byUser) {
    // Before the first change, since pages may move their inputs when these get values.
    const known = new Map();
    const wanted = asked.elements.filter((element, at) => {
      const answer = answers[at];
      const described = asked.inputs[at];
      // An answer without a schema is the input as it was sent.
      if (!answer?.dbSchema || answer.name !== described.name) return false;
      if (!isAsDescribed(element, described) || !mayChange(element, byUser)) return false;
      return takes(element, answer) && visibility.isSeen(element, known);
    });
    for (const element of wanted) {
      const { dbSchema, dbvalue } = answers[asked.elements.indexOf(element)];
      if (element.value === dbvalue) continue;
      fillInput(element, dbvalue);
      pageReader.schemas.set(element, dbSchema);
    }
  }

  return { fill };
})();
