// Tells when a page may show other inputs than before.
"use strict";

const changeWatcher = (() => {
  // A page is looked at when it has been at rest for a while; one that never rests, now and then. In
  // milliseconds.
  const restTime = 150;
  const longestWait = 1000;

  // Some changes nobody tells of, such as rules that scripts put into style sheets.
  const laterLooks = [500, 1500, 4000];

  // What can show an input or hide it without a change of the tree. Of what has loaded only style sheets
  // count, and the page itself.
  const events = ["change", "click", "focusin", "toggle", "transitionend", "animationend"];

  const observed = new WeakSet();

  // Calls `look` after a change, and lets it look into `roots` for further ones.
  function watch(look, roots) {
    let timer = null;
    let waitsSince = null;

    function lookNow() {
      waitsSince = null;
      look();
      observeRoots();
    }

    function changed() {
      const now = performance.now();
      waitsSince ??= now;
      clearTimeout(timer);
      timer = setTimeout(lookNow, Math.min(restTime, waitsSince + longestWait - now));
    }

    const observer = new MutationObserver(changed);

    function observeRoots() {
      for (const root of roots().filter((each) => !observed.has(each))) {
        observer.observe(root, { childList: true, subtree: true, attributes: true });
        observed.add(root);
      }
    }

    for (const name of events) document.addEventListener(name, changed, true);
    document.addEventListener("load", ({ target }) => target.matches?.("link, style") && changed(), true);
    for (const name of ["load", "pageshow", "hashchange"]) window.addEventListener(name, changed);
    for (const time of laterLooks) setTimeout(changed, time);
    observeRoots();
  }

  return { watch };
})();
