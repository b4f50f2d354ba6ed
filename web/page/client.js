// A worker, as the page sees it: calls that are answered later.

/** Why a worker ended: 'memory', 'unreadable', or what it said. */
export class WorkerFailed extends Error {}

export class Client {
  #worker;
  #waiting = new Map();
  #next = 1;

  /** `source` is the URL of the worker's code. */
  constructor(source, module, progress) {
    this.#worker = new Worker(source);
    this.#worker.addEventListener('message', ({ data }) => {
      if (data.id)
        this.#settle(data);
      else
        progress(data.progress);
    });
    // What the worker does not answer itself: the browser has ended it for want of memory, or its code has a fault.
    this.#worker.addEventListener('error', (event) => {
      event.preventDefault();
      this.#failAll(event.message || 'memory');
    });
    this.call('start', module).catch(() => {}); // the next call fails, too
  }

  /** Calls an operation of the engine. */
  call(call, ...args) {
    if (!this.#worker)
      return Promise.reject(new WorkerFailed('closed'));
    const id = this.#next++;
    return new Promise((resolve, reject) => {
      this.#waiting.set(id, { resolve, reject });
      this.#worker.postMessage({ id, call, args });
    });
  }

  close() {
    this.#worker?.terminate();
    this.#worker = null;
    this.#failAll('closed');
  }

  #settle({ id, result, error }) {
    const waiting = this.#waiting.get(id);
    this.#waiting.delete(id);
    if (error === undefined)
      return waiting?.resolve(result);
    waiting?.reject(new WorkerFailed(error));
    if (error !== 'unreadable')
      this.#failAll(error);
  }

  #failAll(reason) {
    for (const { reject } of this.#waiting.values())
      reject(new WorkerFailed(reason));
    this.#waiting.clear();
  }
}
