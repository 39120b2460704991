// The first content script of a watched extension: tells the console of all that reaches this document,
// which the time of its beginning names.
function report(message) {
  console.log(`${performance.timeOrigin} received ${JSON.stringify(message)}`);
}

chrome.runtime.onMessage.addListener((message) => report(message));
const connect = chrome.runtime.connect.bind(chrome.runtime);
chrome.runtime.connect = (...parts) => {
  const port = connect(...parts);
  port.onMessage.addListener((message) => report(message));
  return port;
};
