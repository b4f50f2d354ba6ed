// A file on the page: what was chosen for it, what became of it, and its worker while there is one.

import { Client, WorkerFailed } from './client.js';

const REASONS = {
  memory: 'too large for this browser',
  unreadable: 'cannot be read any more: it was moved, changed or removed; choose it again',
};

export class Entry {
  format = ''; // found by name and content
  complete = false;
  status = 'waiting'; // converting, done, failed
  overview = null; // of what was chosen when it was converted
  problem = '';
  converted = 0; // bytes
  #client = null;
  #running = null; // the conversion that is under way
  #isRemoved = false;
  #environment;
  #changed;

  /**
   * `path` is how it is called in the list. `environment`: {workerSource, module}; `changed` is told of every change.
   */
  constructor(file, path, environment, changed) {
    this.file = file;
    this.path = path;
    this.#environment = environment;
    this.#changed = changed;
  }

  get name() { return this.file.name; }
  get isOpen() { return this.#client !== null; }

  /** Something else is chosen: {format} or {complete}. */
  choose(values) {
    Object.assign(this, values);
    if (!this.#running)
      this.#set({ status: 'waiting' });
  }

  /** Converts it as is chosen, from the disk where its worker is gone. */
  convert() {
    this.#running ??= this.#convert().finally(() => { this.#running = null; });
    return this.#running;
  }

  /** Asks its engine; where it is not converted as is chosen, or its worker is gone, it is converted first. */
  async ask(call, ...args) {
    if (this.#isRemoved)
      throw new WorkerFailed('closed');
    if (this.#running || this.status === 'waiting' || (!this.#client && this.status === 'done'))
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

  /** Nobody wants it any more. */
  remove() {
    this.#isRemoved = true;
    this.close();
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
    if (!this.#isRemoved && (format !== this.format || complete !== this.complete))
      await this.#convert(); // something else was chosen meanwhile
  }

  #fail(error) {
    this.close();
    if (error.message !== 'closed')
      this.#set({ status: 'failed', overview: null, problem: REASONS[error.message] ?? `failed: ${error.message}` });
  }

  #set(values) {
    Object.assign(this, values);
    if (!this.#isRemoved)
      this.#changed(this);
  }
}
