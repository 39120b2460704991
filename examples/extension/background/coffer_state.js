// What is known of the host and its coffer.

// What the agent calls the state of a coffer that may be read.
const unlocked = 1;

export class CofferState {
  connected = false;
  reason = "";
  locked = true;
  settings = {};

  // A new host says anew what it knows; until then nothing is taken for granted.
  setConnected(connected, reason) {
    this.connected = connected;
    this.reason = reason;
    if (!connected) this.locked = true;
  }

  // True if the coffer has been unlocked by it.
  takeData({ dbStatus, settings, default_settings }) {
    const wasLocked = this.locked;
    this.locked = dbStatus !== unlocked;
    this.settings = { ...default_settings, ...settings };
    return wasLocked && !this.locked;
  }

  takeSettings(settings) {
    Object.assign(this.settings, settings);
  }

  // Whether pages are filled without the user asking for it.
  get fillsUnasked() {
    return ["pwdman.enabled", "pwdman.autofillEnabled"].every((name) => this.settings[name] === "true");
  }
}
