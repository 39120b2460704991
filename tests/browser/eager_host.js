// A host that wants to fill every input of every page, to see what the extension lets it. Inputs get what
// their types ask for, unless their ids say that they are told to be something else. Pages "no-leave-…"
// switch the setting off that they are named after.
import { decodeMessage, encodeMessage } from "../../examples/extension/transport/index.js";

const values = { user: "user@example.org", password: "secret" };
let bytes = Buffer.alloc(0);
let gathered = "";
let lastId = 0;

function say(message) {
  const envelope = { reply: "success", id: `r${++lastId}`, fragment: "final", data: encodeMessage(message) };
  const text = Buffer.from(JSON.stringify(envelope));
  const length = Buffer.alloc(4);
  length.writeUInt32LE(text.length);
  process.stdout.write(Buffer.concat([length, text]));
}

function fill(input) {
  const told = /^told-(user|password)/.exec(input.id)?.[1];
  const dbSchema = told ?? (input.type === "password" ? "password" : "user");
  return { ...input, dbSchema, dbvalue: values[dbSchema] };
}

function receive({ data }) {
  const off = /^no-leave-(.*)/.exec(data?.title)?.[1];
  if (off) say({ "coffer-set-settings": { ...settings, [`pwdman.${off}`]: "false" } });
  if (data?.inputs) say({ coffer_info_update: { ...data, inputs: data.inputs.map(fill) } });
}

const settings = { "pwdman.enabled": "true", "pwdman.autofillEnabled": "true" };
say({ "coffer-init-data": { dbStatus: 1, settings, default_settings: {} } });
process.stdin.on("data", (more) => {
  bytes = Buffer.concat([bytes, more]);
  while (bytes.length >= 4 && bytes.length >= 4 + bytes.readUInt32LE()) {
    const end = 4 + bytes.readUInt32LE();
    const { fragment, msg } = JSON.parse(bytes.subarray(4, end));
    bytes = bytes.subarray(end);
    gathered += msg;
    if (fragment === "final") receive(decodeMessage(gathered));
    if (fragment === "final") gathered = "";
  }
});
process.stdin.on("end", () => process.exit());
