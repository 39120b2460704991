// A host that sends everything late. Usage: node delayed_host.js MILLISECONDS HOST
import { spawn } from "node:child_process";

const [delay, host] = process.argv.slice(2);
const child = spawn(host, { stdio: ["pipe", "pipe", "inherit"] });
process.stdin.pipe(child.stdin);
child.stdout.on("data", (bytes) => setTimeout(() => process.stdout.write(bytes), Number(delay)));
child.on("exit", () => process.exit());
