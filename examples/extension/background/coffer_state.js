// What is known of the host and its coffer.

// The agent's value for a coffer that may be read.
const unlocked = 1;

export class CofferState {
  connected = false;
  reason = "";
  locked = true;
  settings = {};

  // A new host reports its state again; until then nothing is known.
  setConnected(connected, reason) {
    this.connected = connected;
    this.reason = reason;
    if (!connected) this.locked = true;
  }

  // True if the coffer was locked before, and is unlocked now.
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
