// Whether a person can see an input.
"use strict";

const visibility = (() => {
  // What is smaller or fainter is meant for programs. In CSS pixels.
  const leastSize = 8;
  const leastOpacity = 0.1;

  const everywhere = { left: -Infinity, top: -Infinity, right: Infinity, bottom: Infinity };
  const nowhere = { left: 0, top: 0, right: 0, bottom: 0 };
  const clippedAway = /^rect\(([01]px,? ?){4}\)$|^inset\((50|100)%/;

  // A form has its inputs as properties, and they may be called like its own.
  const parentElement = Object.getOwnPropertyDescriptor(Node.prototype, "parentElement").get;

  function parentOf(element) {
    return element.assignedSlot ?? parentElement.call(element) ?? element.getRootNode().host ?? null;
  }

  function intersect(a, b) {
    return {
      left: Math.max(a.left, b.left),
      top: Math.max(a.top, b.top),
      right: Math.min(a.right, b.right),
      bottom: Math.min(a.bottom, b.bottom),
    };
  }

  function isLarge({ left, top, right, bottom }) {
    return right - left >= leastSize && bottom - top >= leastSize;
  }

  // The part of an element's content that shows, given the part that shows around the element. Content that
  // scrolls can all be reached, wherever it is, as long as its scrolling area shows at all. The overflow of
  // the page itself is that of the window.
  function exposureWithin(element, style, { area, port }) {
    if (clippedAway.test(style.clip) || clippedAway.test(style.clipPath)) return { area: nowhere, port };
    const isPage = element === document.body || element === document.documentElement;
    if (isPage || !/hidden|clip|auto|scroll/.test(style.overflow)) return { area, port };
    const box = element.getBoundingClientRect();
    const shown = intersect(area, box);
    if (!/auto|scroll/.test(style.overflow)) return { area: shown, port };
    return { area: isLarge(shown) ? everywhere : nowhere, port: intersect(port, box) };
  }

  // What shows of an element's content, given the element and its ancestors: the area in which it shows, the
  // part of the window through which it is scrolled (everything if it isn't), and the opacity. `known` keeps
  // this for the elements of the same pass.
  function exposureOf(element, known) {
    if (element === null) return { area: everywhere, port: everywhere, opacity: 1 };
    if (known.has(element)) return known.get(element);
    const style = getComputedStyle(element);
    const outer = exposureOf(parentOf(element), known);
    const within = exposureWithin(element, style, positionedIn(element, style, outer, known));
    const exposure = { ...within, opacity: outer.opacity * Number(style.opacity) };
    known.set(element, exposure);
    return exposure;
  }

  // A positioned box isn't clipped by ancestors that don't position it.
  function positionedIn(element, style, outer, known) {
    if (style.position === "fixed") return exposureOf(null, known);
    if (style.position === "absolute") return exposureOf(element.offsetParent, known);
    return outer;
  }

  // Nobody can scroll there.
  function isOutsidePage({ left, top, right, bottom }) {
    const { scrollWidth, scrollHeight } = document.documentElement;
    return (
      right + scrollX <= 0 ||
      bottom + scrollY <= 0 ||
      left + scrollX >= Math.max(scrollWidth, innerWidth) ||
      top + scrollY >= Math.max(scrollHeight, innerHeight)
    );
  }

  function isOpaque(element) {
    const { backgroundColor, backgroundImage, opacity } = getComputedStyle(element);
    if (Number(opacity) < 0.9) return false;
    const alpha = /(?:^rgba\(.*,|\/) ([\d.]+)\)$/.exec(backgroundColor)?.[1] ?? 1;
    return alpha > 0.9 || backgroundImage !== "none" || element.matches("img, video, canvas, iframe");
  }

  function isCoveredAt(element, [x, y], own) {
    // Usually there is nothing above, and finding everything below takes long.
    if (own.has(document.elementFromPoint(x, y))) return false;
    const hits = document.elementsFromPoint(x, y);
    const at = hits.findIndex((hit) => own.has(hit));
    const above = hits.slice(0, Math.max(at, 0));
    return above.some((hit) => hit.closest("label")?.control !== element && isOpaque(hit));
  }

  function isWithin([x, y], { left, top, right, bottom }) {
    return x >= left && y >= top && x < right && y < bottom;
  }

  // Whether something opaque covers the input everywhere. What has to be scrolled to isn't tested.
  function isCovered(element, { left, top, right, bottom }, port) {
    const at = (partX, partY) => [left + (right - left) * partX, top + (bottom - top) * partY];
    const points = [at(0.5, 0.5), at(0.2, 0.2), at(0.8, 0.2), at(0.2, 0.8), at(0.8, 0.8)];
    const own = new Set();
    // Of a shadow tree, the document sees only the host element.
    for (let each = element; each; each = each.getRootNode().host) own.add(each);
    const shown = intersect(port, { left: 0, top: 0, right: innerWidth, bottom: innerHeight });
    const tested = points.filter((point) => isWithin(point, shown));
    return tested.length > 0 && tested.every((point) => isCoveredAt(element, point, own));
  }

  // A frame that the page around it hides. What a page of another origin does with it can't be seen from here.
  function isFrameSeen() {
    const frame = window.frameElement;
    return innerWidth >= leastSize && innerHeight >= leastSize && (frame === null || isShown(frame));
  }

  function isShown(element) {
    return element.checkVisibility({
      opacityProperty: true,
      checkOpacity: true,
      visibilityProperty: true,
      checkVisibilityCSS: true,
    });
  }

  // `known` is a Map for one pass over a page, or none.
  function isSeen(element, known = new Map()) {
    if (!isShown(element) || !isFrameSeen()) return false;
    const { area, port, opacity } = exposureOf(element, known);
    const shown = intersect(element.getBoundingClientRect(), area);
    if (opacity < leastOpacity || !isLarge(shown)) return false;
    return (port !== everywhere || !isOutsidePage(shown)) && !isCovered(element, shown, port);
  }

  return { isSeen };
})();
