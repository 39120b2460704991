// The first content script of a watched extension: writes everything that reaches this document to the
// console. The document's name is the time of its beginning.
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
