export { decodeMessage, encodeMessage, envelopesOf, largestEnvelope, largestMessage } from "./envelopes.js";
export { HostPort } from "./host_port.js";
export { ReplyJoiner } from "./reply_joiner.js";
