// The first content script of a watched extension: asks a site for what has reached this document, which the
// time of its beginning names.
const watched = globalThis.browser ?? globalThis.chrome;

function report(message) {
  const text = `${performance.timeOrigin} received ${JSON.stringify(message)}`;
  new Image().src = `http://watch.localhost:${location.port}/?${encodeURIComponent(text)}`;
}

watched.runtime.onMessage.addListener((message) => report(message));
const connect = watched.runtime.connect.bind(watched.runtime);
watched.runtime.connect = (...parts) => {
  const port = connect(...parts);
  port.onMessage.addListener((message) => report(message));
  return port;
};
