// A file on the page: what was chosen for it, what became of it, and its worker while there is one.

import { Client, WorkerFailed } from './client.js';

const REASONS = {
  memory: 'too large for this browser',
  unreadable: 'cannot be read: it was moved, changed or removed since it was chosen',
};

export class Entry {
  format = ''; // found by name and content
  complete = false;
  status = 'waiting'; // converting, done, failed
  overview = null;
  problem = '';
  converted = 0; // bytes
  #client = null;
  #running = null; // the conversion that is under way
  #environment;
  #changed;

  /** `environment`: {workerSource, module}; `changed` is told of every change. */
  constructor(file, environment, changed) {
    this.file = file;
    this.#environment = environment;
    this.#changed = changed;
  }

  get name() { return this.file.name; }
  get isOpen() { return this.#client !== null; }

  /** Converts it, from the disk where its worker is gone. */
  async convert() {
    this.#running ??= this.#convert().finally(() => { this.#running = null; });
    return this.#running;
  }

  async #convert() {
    const [format, complete] = [this.format, this.complete];
    this.#set({ status: 'converting', converted: 0, problem: '' });
    try {
      if (!this.#client) {
        this.#client = new Client(this.#environment.workerSource, this.#environment.module,
                                  (converted) => this.#set({ converted }));
        await this.#client.call('load', this.file);
      }
      const overview = await this.#client.call('convert', this.name, format, complete);
      this.#set({ status: 'done', overview, problem: overview.problem });
    } catch (error) {
      this.#fail(error);
    }
    if (format !== this.format || complete !== this.complete)
      await this.#convert(); // something else was chosen meanwhile
  }

  /** Asks its engine; where the worker is gone, a new one converts the file first. */
  async ask(call, ...args) {
    if (this.#running)
      await this.#running;
    else if (!this.#client && this.status === 'done')
      await this.convert();
    if (!this.#client)
      throw new WorkerFailed(this.problem);
    try {
      return await this.#client.call(call, ...args);
    } catch (error) {
      if (error.message !== 'closed')
        this.#fail(error);
      throw error;
    }
  }

  /** Lets its worker go. */
  close() {
    this.#client?.close();
    this.#client = null;
  }

  #fail(error) {
    this.close();
    if (error.message !== 'closed')
      this.#set({ status: 'failed', overview: null, problem: REASONS[error.message] ?? `failed: ${error.message}` });
  }

  #set(values) {
    Object.assign(this, values);
    this.#changed(this);
  }
}
