// What a page says of its forms: their names, and for people their buttons and headings.
"use strict";

const formTexts = (() => {
  const longestText = 60;
  const mostButtons = 3;

  const submits = "button:not([type=button], [type=reset]), input[type=submit], input[type=image]";
  const links = 'a:not([href]), a[href^="#"], a[href^="javascript:" i]';
  const buttons = `button, input[type=submit], input[type=image], input[type=button], [role=button], ${links}`;
  const headings = "h1, h2, h3, h4, legend, [role=heading]";

  // A form has its inputs as properties, and they may be called like its own.
  const parentOf = Object.getOwnPropertyDescriptor(Node.prototype, "parentElement").get;

  function cleaned(text) {
    return String(text ?? "").replace(/[\s[\]|]+/g, " ").trim().slice(0, longestText);
  }

  function textOf(element) {
    const { textContent, value, alt, title } = element;
    const label = element.getAttribute("aria-label");
    const picture = element.querySelector("img")?.alt;
    return cleaned([textContent, value, alt, label, picture, title].find((text) => cleaned(text)));
  }

  function formOf(element) {
    return element.form ?? element.closest("form");
  }

  function* ancestorsOf(element) {
    for (let each = element; each && each !== document.body; ) {
      each = parentOf.call(each) ?? each.getRootNode().host ?? null;
      if (each) yield each;
    }
  }

  // Without a form, what belongs to a password is what the smallest box around it, another input and a
  // button has in it.
  function findBlocks(inputs, elements) {
    const count = (those) => {
      const counts = new Map();
      for (const element of those.filter((each) => formOf(each) === null)) {
        for (const box of ancestorsOf(element)) counts.set(box, (counts.get(box) ?? 0) + 1);
      }
      return counts;
    };
    const inputsIn = count(inputs);
    const buttonsIn = count(elements.filter((each) => each.matches(buttons)));
    const passwords = inputs.filter((input) => input.type === "password" && formOf(input) === null);
    const isBlock = (box) => inputsIn.get(box) > 1 && buttonsIn.has(box);
    return new Set(passwords.map((input) => [...ancestorsOf(input)].find(isBlock)).filter(Boolean));
  }

  function isTold(element) {
    return element.matches(`${buttons}, ${headings}`) && element.checkVisibility();
  }

  // What has been gathered of a form: buttons ahead of its inputs, or of its password, are for something
  // else.
  function addInput(form, input) {
    form.inputs.push(input);
    if (input.type === "password" || form.inputs.length === 1) form.others = [];
  }

  function gather(elements, inputs, ownerOf) {
    const forms = new Map();
    let heading = "";
    for (const element of elements) {
      const owner = ownerOf(element);
      if (inputs.has(element)) {
        if (!forms.has(owner)) forms.set(owner, { heading, submits: [], others: [], inputs: [] });
        addInput(forms.get(owner), element);
        heading = "";
      } else if (element.matches(headings)) {
        heading = textOf(element);
      } else {
        forms.get(owner)?.[element.matches(submits) && formOf(element) ? "submits" : "others"].push(textOf(element));
      }
    }
    return forms;
  }

  function nameOf(owner, documentForms, blocks) {
    if (owner === null) return "";
    if (blocks.includes(owner)) return `block-${blocks.indexOf(owner)}`;
    return owner.getAttribute("id") || owner.getAttribute("name") || `form-${documentForms.indexOf(owner)}`;
  }

  // For each of `inputs` what its form is called: the name and, in brackets, the buttons and the heading.
  // Forms without a name are told apart by their place in the page. `elements` are all of the page.
  function describeForms(inputs, elements) {
    const wanted = new Set(inputs);
    const told = elements.filter((each) => wanted.has(each) || isTold(each));
    const found = findBlocks(inputs, told);
    const ownerOf = (each) => formOf(each) ?? [...ancestorsOf(each)].find((box) => found.has(box)) ?? null;
    const names = new Map();
    const documentForms = [...document.forms];
    for (const [owner, form] of gather(told, wanted, ownerOf)) {
      const name = nameOf(owner, documentForms, [...found]);
      const chosen = [...form.submits, ...form.others].filter(Boolean).slice(0, mostButtons);
      const texts = `[${[...chosen, form.heading].filter(Boolean).join(" | ")}]`;
      for (const input of form.inputs) names.set(input, texts === "[]" ? name : `${name} ${texts}`.trim());
    }
    return names;
  }

  return { describeForms };
})();
