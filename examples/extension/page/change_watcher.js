// Notices when a page may show other inputs than before.
"use strict";

const changeWatcher = (() => {
  // A page is examined when it has been at rest for a while, or now and then if it never rests. In
  // milliseconds.
  const restTime = 150;
  const longestWait = 1000;

  // Some changes raise no event, such as rules that scripts put into style sheets.
  const laterLooks = [500, 1500, 4000];

  // These can show or hide an input without a change of the tree. Of "load" events, only those of style
  // sheets and of the page itself count.
  const events = ["change", "click", "focusin", "toggle", "transitionend", "animationend"];

  const observed = new WeakSet();

  // Calls `look` after a change, and watches `roots` for further changes.
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
