// What the popup and the settings page ask for. Pages of the web get no answer.

const commands = [
  "lock-coffer",
  "unlock-coffer",
  "open-coffer",
  "configure-coffer",
  "open-settings",
  "get-settings",
];

// The logins for what the tab in front shows; frames of the same site share theirs.
async function loginsInFront(api, frames) {
  const [tab] = await api.tabs.query({ active: true, lastFocusedWindow: true });
  const logins = new Map();
  for (const { key, source, login } of frames.ofTab(tab?.id).filter((frame) => frame.login !== null)) {
    const host = new URL(source).host;
    const name = JSON.stringify([host, login]);
    if (!logins.has(name)) logins.set(name, { host, user: login, keys: [] });
    logins.get(name).keys.push(key);
  }
  return [...logins.values()];
}

export function answerOwnPages(api, { frames, port, state }) {
  const receivers = {
    command({ method }) {
      if (!commands.includes(method)) return;
      port.reconnect();
      port.send({ method });
    },
    fill({ keys }) {
      for (const frame of keys.map((key) => frames.find(key)).filter(Boolean)) {
        frames.tell(frame, { type: "fill-by-user" });
      }
    },
    async state(_, answer) {
      const { connected, reason, locked, settings, fillsUnasked } = state;
      const logins = locked ? [] : await loginsInFront(api, frames);
      answer({ connected, reason, locked, settings, fillsUnasked, logins });
    },
  };

  // True keeps the way back open for an answer that comes later.
  api.runtime.onMessage.addListener((message, sender, answer) => {
    const isOwnPage = sender.url?.startsWith(api.runtime.getURL(""));
    if (!isOwnPage || !Object.hasOwn(receivers, message.type)) return false;
    receivers[message.type](message, answer);
    return message.type === "state";
  });
}
