// Serves the login pages of the test for a person's browser, at http://localhost:8080, until it is
// interrupted. Usage: node serve.js
import { startSite } from "./site.js";

const port = 8080;
try {
  await startSite(port);
  console.log(`serving http://localhost:${port}/plain; end with Ctrl+C`);
} catch (error) {
  console.error(`serve: can't use port ${port}: ${error.message}`);
  process.exit(1);
}
