// The files that were chosen, and the order in which they are converted.

import { byId, counted, element, shownSize } from './dom.js';
import { Entry } from './entry.js';

const OPEN = 3; // so many files keep their worker; another one starts anew when it is looked at

export class Files {
  #entries = [];
  #queue = [];
  #busy = 0;
  #open = []; // least lately looked at first
  #selected = null;
  #list;
  #environment;
  #show;
  #say;

  /** `list` is their <ul>; `show(entry)`: one was chosen or has changed (null: none is left); `say(text)` aloud. */
  constructor(list, environment, show, say) {
    this.#list = list;
    this.#environment = environment;
    this.#show = show;
    this.#say = say;
  }

  get selected() { return this.#selected; }

  /** Takes files: {file, path}. */
  add(files) {
    const first = this.#entries.length;
    for (const { file, path } of files) {
      const entry = new Entry(file, path, this.#environment, (changed) => this.#changed(changed));
      this.#entries.push(entry);
      this.#queue.push(entry);
      this.#list.append(this.#item(entry));
    }
    if (this.#entries.length > first)
      this.select(this.#entries[first]);
    this.#work();
  }

  select(entry) {
    this.#selected = entry;
    for (const item of this.#list.children)
      item.firstChild.setAttribute('aria-current', item.entry === entry ? 'true' : 'false');
    if (entry) {
      this.#keepOpen(entry);
      if (entry.status === 'waiting')
        this.#first(entry);
    }
    this.#show(entry);
  }

  /** Converts one again, as is now chosen for it. */
  again(entry) {
    if (entry.status === 'waiting') {
      this.#first(entry);
      this.#work();
    }
  }

  /** Puts one in front of the others that wait. */
  #first(entry) {
    this.#queue = [entry, ...this.#queue.filter((other) => other !== entry)];
  }

  #remove(entry) {
    const at = this.#entries.indexOf(entry);
    entry.remove();
    this.#entries.splice(at, 1);
    this.#queue = this.#queue.filter((other) => other !== entry);
    this.#open = this.#open.filter((other) => other !== entry);
    this.#list.children[at].remove();
    if (this.#selected === entry)
      this.select(this.#entries[Math.min(at, this.#entries.length - 1)] ?? null);
    (this.#list.children[Math.min(at, this.#entries.length - 1)]?.firstChild ?? byId('choose')).focus();
  }

  async #work() {
    const most = Math.min(Math.max(navigator.hardwareConcurrency ?? 2, 1), 4);
    while (this.#busy < most && this.#queue.length > 0) {
      const entry = this.#queue.shift();
      if (entry.status !== 'waiting') // it was asked for before its turn came
        continue;
      ++this.#busy;
      entry.convert().then(() => {
        --this.#busy;
        if (entry === this.#selected)
          this.#say(`${entry.name}: ${entry.overview?.summary ?? entry.problem}`);
        else if (this.#busy === 0 && this.#queue.length === 0)
          this.#say(`${counted(this.#entries.length, 'file')}, none is waiting`);
        this.#work();
      });
    }
  }

  /** The files looked at last keep their workers, as memory is dear. */
  #keepOpen(entry) {
    this.#open = this.#open.filter((other) => other !== entry && other.isOpen);
    this.#open.push(entry);
    while (this.#open.length > OPEN) {
      const least = this.#open.findIndex((other) => other !== this.#selected && other.status !== 'converting');
      if (least < 0)
        break;
      this.#open.splice(least, 1)[0].close();
    }
  }

  #changed(entry) {
    const at = this.#entries.indexOf(entry);
    if (at < 0)
      return;
    this.#fill(this.#list.children[at], entry);
    if (entry.status === 'done')
      this.#keepOpen(entry);
    if (entry === this.#selected)
      this.#show(entry);
  }

  #item(entry) {
    const item = element('li', {},
      element('button', { type: 'button', class: 'file', onclick: () => this.select(entry) }),
      element('button', {
        type: 'button', class: 'remove', 'aria-label': `Remove ${entry.path}`, title: 'Remove',
        onclick: () => this.#remove(entry),
      }, '×'));
    item.entry = entry;
    this.#fill(item, entry);
    return item;
  }

  #fill(item, entry) {
    const { overview } = entry;
    const state = {
      waiting: 'waiting',
      converting: `converting${entry.converted > 0 ? ` · ${Math.round(100 * entry.converted / entry.file.size)} %` : ''}`,
      failed: entry.problem,
      done: overview?.converted ? overview.format : overview?.problem,
    }[entry.status];
    const remarks = overview?.remarks.length ?? 0;
    item.className = entry.status === 'failed' || overview?.converted === false ? 'bad' : entry.status;
    item.firstChild.replaceChildren(
      element('span', { class: 'name', title: entry.path }, entry.path),
      element('span', { class: 'state' }, `${state} · ${shownSize(entry.file.size)}`),
      ...(remarks > 0 ? [element('span', { class: 'badge' }, counted(remarks, 'remark'))] : []));
  }
}
