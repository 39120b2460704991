// What the types of the transport let through, and what they don't. Only checked, never run.
import { envelopesOf, HostPort, ReplyJoiner } from "../../examples/extension/transport/index.js";
import type { NativeApi, Page } from "../../examples/extension/transport/index.js";

declare const api: NativeApi;
const page: Page = { sender: "tab-12", title: null, fHasMultipleForms: 1, inputs: [{ name: "email" }] };
const port = new HostPort(api, (notification) => {
  if ("coffer_info_update" in notification) notification.coffer_info_update.inputs[0]?.dbvalue.trim();
  if ("coffer-init-data" in notification) notification["coffer-init-data"].dbStatus.toFixed();
});
port.send({ method: "save-info-from-page", data: page });
port.send({ method: "drop-down", data: null });
for (const { id, fragment, msg } of envelopesOf({ method: "get-settings" }, "m1")) {
  new ReplyJoiner().add({ reply: "success", id, fragment, data: msg });
}
// @ts-expect-error A flag is 0 or 1.
const flag: Page = { fHasMultipleForms: true };
// @ts-expect-error There is no such request.
port.send({ method: "open-door" });
// @ts-expect-error A page is needed.
port.send({ method: "get-info-for-page" });
