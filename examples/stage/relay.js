// Runs in the test's own page: passes its orders to the background, and the answers back.
addEventListener("message", async ({ data }) => {
  if (!data.order) return;
  const api = globalThis.browser ?? globalThis.chrome;
  const answer = await api.runtime.sendMessage({ type: "order", ...data });
  postMessage({ answer: answer ?? { error: "nobody answers" } });
});
document.documentElement.dataset.relay = "ready";
