// Logins that the user has typed and sent. One that the site refuses must not replace a good one, so it
// waits until the page has gone on or its form has gone away.

// In milliseconds. A page that is left later than that is left for another reason.
const longestWait = 15_000;

// How long the next page may take to load, and then to show that it wants the password again.
const nextPageTime = 5000;
const settleTime = 2000;

const mostOrigins = 1000;

const originOf = (frame) => new URL(frame.source).origin;

export class TypedLogins {
  #save;
  #byTab = new Map();
  #originsWithLogin = new Set();

  // `save` gets the frame that a login was typed into, and the page as it was sent.
  constructor(save) {
    this.#save = save;
  }

  // To be called when the agent turns out to have a login for the frame's origin. Frames of other pages, and
  // those that it is in doubt about, tell nothing of it.
  hasLogin(frame) {
    this.#originsWithLogin.add(originOf(frame));
    const [oldest] = this.#originsWithLogin;
    if (this.#originsWithLogin.size > mostOrigins) this.#originsWithLogin.delete(oldest);
  }

  sent(frame, page) {
    this.#forget(frame.tab);
    this.#byTab.set(frame.tab, { frame, page, hasLeft: false });
    this.#wait(frame.tab, longestWait, () => this.#forget(frame.tab));
  }

  takenBack(frame) {
    if (this.#byTab.get(frame.tab)?.frame === frame) this.#forget(frame.tab);
  }

  formGone(frame) {
    if (this.#byTab.get(frame.tab)?.frame === frame) this.#finish(frame.tab);
  }

  frameOpened(frame) {
    if (this.#follows(frame)) this.#wait(frame.tab, settleTime, () => this.#finish(frame.tab));
  }

  passwordShown(frame) {
    const typed = this.#byTab.get(frame.tab);
    if (typed?.hasLeft && originOf(frame) === originOf(typed.frame)) this.#forget(frame.tab);
  }

  frameClosed(frame) {
    const typed = this.#byTab.get(frame.tab);
    if (this.#follows(frame)) this.#finish(frame.tab);
    if (typed?.frame !== frame) return;
    typed.hasLeft = true;
    // Where there is no login yet, none can be lost.
    const canLose = this.#originsWithLogin.has(originOf(frame));
    if (canLose) this.#wait(frame.tab, nextPageTime, () => this.#finish(frame.tab));
    else this.#finish(frame.tab);
  }

  // Whether the frame shows what came after the login.
  #follows(frame) {
    const typed = this.#byTab.get(frame.tab);
    return Boolean(typed?.hasLeft) && [0, typed.frame.frameId].includes(frame.frameId);
  }

  #wait(tab, time, then) {
    const typed = this.#byTab.get(tab);
    clearTimeout(typed.timer);
    typed.timer = setTimeout(then, time);
  }

  #forget(tab) {
    clearTimeout(this.#byTab.get(tab)?.timer);
    this.#byTab.delete(tab);
  }

  #finish(tab) {
    const { frame, page } = this.#byTab.get(tab);
    this.#forget(tab);
    this.hasLogin(frame);
    this.#save(frame, page);
  }
}
