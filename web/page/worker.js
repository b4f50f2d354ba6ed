// Works on one file, away from the page. A message {id, call, args} is answered with {id, result} or {id, error}; in
// between {progress} tells of the bytes that were converted.

import { Engine, OutOfMemory, Unreadable } from './engine.js';

let engine = null; // or soon
let told = 0;

function progress(bytes) {
  const now = performance.now();
  if (now - told > 100) {
    told = now;
    postMessage({ progress: bytes });
  }
}

async function answer({ call, args }) {
  if (call === 'start') {
    engine = Engine.start(args[0], progress);
    await engine;
    return null;
  }
  return (await engine)[call](...args);
}

addEventListener('message', async ({ data }) => {
  try {
    postMessage({ id: data.id, result: await answer(data) });
  } catch (error) {
    // RangeError: the browser gives no such memory to JavaScript; a trap leaves the module unusable.
    const noMemory = error instanceof OutOfMemory || error instanceof RangeError;
    const unreadable = error instanceof Unreadable;
    postMessage({ id: data.id, error: noMemory ? 'memory' : unreadable ? 'unreadable' : String(error) });
    if (!unreadable)
      close();
  }
});
