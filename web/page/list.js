// A list of any length, of which only what is in view is in the document. Its items come in pieces, when they are
// needed.

import { element } from './dom.js';

const CHUNK = 200;
// Browsers make no element higher than some ten million pixels; a longer list scrolls faster than it is shown.
const HIGHEST = 8e6;

export class List {
  #scroller;
  #space;
  #options;
  #count = 0;
  #chunks = new Map();
  #active = -1;
  #version = 0;
  #frame = 0;

  /**
   * `scroller` is the element that scrolls and takes the keys. Options: rowHeight and headHeight (pixels), idPrefix,
   * fetch(first, count): the items, later; render(item, index): an element's children; className(item);
   * roles {row}; choose(index, item): one was clicked, or is under the cursor.
   */
  constructor(scroller, options) {
    this.#scroller = scroller;
    this.#options = options;
    this.#space = element('div', { class: 'space', role: 'presentation' });
    scroller.append(this.#space);
    scroller.addEventListener('scroll', () => this.#draw(), { passive: true });
    scroller.addEventListener('keydown', (event) => this.#key(event));
    this.#space.addEventListener('click', (event) => {
      const row = event.target.closest('[data-index]');
      if (row && getSelection().isCollapsed) // texts may be marked, and copied
        this.#choose(Number(row.dataset.index));
    });
    new ResizeObserver(() => this.#draw()).observe(scroller);
  }

  get active() { return this.#active; }

  /** Other items, so many of them. */
  reset(count) {
    ++this.#version;
    this.#count = count;
    this.#chunks.clear();
    this.#active = -1;
    this.#space.replaceChildren(); // nobody is to click an item of before
    this.#space.style.height = `${this.#height()}px`;
    this.#scroller.scrollTop = 0;
    this.#draw();
  }

  /** Puts the cursor on an item (-1: nowhere) and brings it into view. */
  show(index) {
    this.#active = index;
    if (index >= 0)
      this.#reveal(index);
    this.#draw();
  }

  #height() { return Math.min(this.#count * this.#options.rowHeight, HIGHEST); }
  #room() { return Math.max(this.#scroller.clientHeight - (this.#options.headHeight ?? 0), this.#options.rowHeight); }
  #visible() { return Math.ceil(this.#room() / this.#options.rowHeight) + 1; }

  /** The item at the top of the view; with a part of one where it is not scrolled by whole items. */
  #top() {
    const all = this.#count * this.#options.rowHeight;
    if (all <= HIGHEST)
      return this.#scroller.scrollTop / this.#options.rowHeight;
    const fits = this.#room() / this.#options.rowHeight;
    const most = Math.max(HIGHEST - this.#room(), 1);
    return Math.min(this.#scroller.scrollTop / most, 1) * Math.max(this.#count - fits, 0);
  }

  #scrollTo(top) {
    const all = this.#count * this.#options.rowHeight;
    if (all <= HIGHEST) {
      this.#scroller.scrollTop = top * this.#options.rowHeight;
    } else {
      const fits = this.#room() / this.#options.rowHeight;
      this.#scroller.scrollTop = (top / Math.max(this.#count - fits, 1)) * (HIGHEST - this.#room());
    }
  }

  #reveal(index) {
    const top = this.#top();
    const fits = Math.floor(this.#room() / this.#options.rowHeight);
    if (index < top || index > top + fits - 1)
      this.#scrollTo(Math.max(0, index - Math.floor(fits / 2)));
  }

  #draw() {
    if (!this.#frame)
      this.#frame = requestAnimationFrame(() => { this.#frame = 0; this.#drawNow(); });
  }

  #drawNow() {
    const { rowHeight, idPrefix } = this.#options;
    const top = this.#top();
    const first = Math.max(0, Math.floor(top) - 2);
    const last = Math.min(this.#count, Math.ceil(top) + this.#visible() + 2);
    const rows = [];
    for (let index = first; index < last; ++index) {
      const row = this.#row(index);
      row.style.top = `${this.#scroller.scrollTop + (index - top) * rowHeight}px`;
      rows.push(row);
    }
    this.#space.replaceChildren(...rows);
    if (this.#active >= first && this.#active < last)
      this.#scroller.setAttribute('aria-activedescendant', `${idPrefix}${this.#active}`);
    else
      this.#scroller.removeAttribute('aria-activedescendant');
  }

  #row(index) {
    const { rowHeight, idPrefix, render, className, role, indexAttribute } = this.#options;
    const item = this.#item(index);
    const active = index === this.#active;
    const row = element('div', {
      id: `${idPrefix}${index}`, role, 'data-index': index, [indexAttribute]: index + (role === 'row' ? 2 : 1),
      'aria-selected': active ? 'true' : 'false', 'aria-setsize': role === 'option' ? this.#count : null,
      class: `row ${active ? 'active' : ''} ${item ? className(item) : 'pending'}`,
    });
    row.style.height = `${rowHeight}px`;
    if (item !== undefined)
      row.append(...render(item, index));
    return row;
  }

  #item(index) {
    const at = Math.floor(index / CHUNK);
    const chunk = this.#chunks.get(at);
    if (chunk === undefined)
      this.#fetch(at);
    return chunk?.[index % CHUNK];
  }

  async #fetch(at) {
    const version = this.#version;
    this.#chunks.set(at, null);
    if (this.#chunks.size > 50) // what was seen long ago may be asked for again
      this.#chunks.delete(this.#chunks.keys().next().value);
    try {
      const items = await this.#options.fetch(at * CHUNK, CHUNK);
      if (version === this.#version) {
        this.#chunks.set(at, items);
        this.#draw();
      }
    } catch {
      if (version === this.#version) // whoever shows the file says why; it may be asked for again
        this.#chunks.delete(at);
    }
  }

  async #choose(index) {
    if (index < 0 || index >= this.#count)
      return;
    this.show(index);
    const version = this.#version;
    const known = this.#chunks.get(Math.floor(index / CHUNK))?.[index % CHUNK];
    const item = known ?? (await this.#options.fetch(index, 1).catch(() => []))[0];
    if (version === this.#version && item !== undefined)
      this.#options.choose(index, item);
  }

  #key(event) {
    const page = Math.max(1, this.#visible() - 2);
    const at = this.#active < 0 ? Math.floor(this.#top()) : this.#active;
    const to = {
      ArrowDown: this.#active < 0 ? at : at + 1, ArrowUp: at - 1, PageDown: at + page, PageUp: at - page,
      Home: 0, End: this.#count - 1, Enter: at, ' ': at,
    }[event.key];
    if (to === undefined || event.ctrlKey || event.altKey || event.metaKey || this.#count === 0)
      return;
    event.preventDefault();
    this.#choose(Math.min(Math.max(to, 0), this.#count - 1));
  }
}
