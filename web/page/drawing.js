// The drawing: the program's own SVG as a picture, so that nothing in it is part of the page. Where its places are the
// engine knows.

import { element } from './dom.js';

const REACH = 14; // pixels of the screen around a click
const BORDERS = 4;
const SMALLEST = 0.05;
const LARGEST = 20;

export class Drawing {
  #scroller;
  #sheet;
  #picture;
  #ring;
  #note;
  #zoom = 1;
  #size = null;
  #isFit = true; // it is to fill the pane, whatever its size
  #url = null;
  #isMoved = false; // since the button was pressed
  #ask;
  #choose;

  /** `ask(call, ...args)` asks the engine; `choose(row)`: a place was clicked. */
  constructor({ scroller, note, zoomIn, zoomOut, fit }, ask, choose) {
    this.#scroller = scroller;
    this.#note = note;
    this.#ask = ask;
    this.#choose = choose;
    this.#picture = element('img', { alt: '', draggable: 'false' });
    this.#ring = element('div', { class: 'ring', hidden: true });
    this.#sheet = element('div', { class: 'sheet', hidden: true }, this.#picture, this.#ring);
    scroller.append(this.#sheet);
    zoomIn.addEventListener('click', () => this.#zoomBy(1.5));
    zoomOut.addEventListener('click', () => this.#zoomBy(1 / 1.5));
    fit.addEventListener('click', () => this.#fit());
    scroller.addEventListener('keydown', (event) => this.#key(event));
    scroller.addEventListener('wheel', (event) => {
      if (!event.ctrlKey)
        return;
      event.preventDefault();
      this.#zoomBy(event.deltaY < 0 ? 1.2 : 1 / 1.2, event);
    }, { passive: false });
    this.#picture.addEventListener('click', (event) => this.#click(event));
    this.#dragToMove();
    new ResizeObserver(() => { if (this.#isFit) this.#fit(); }).observe(scroller);
  }

  get isShown() { return this.#size !== null; }

  /** Shows no drawing, and says why. */
  clear(text) {
    if (this.#url)
      URL.revokeObjectURL(this.#url);
    this.#url = null;
    this.#size = null;
    this.#sheet.hidden = true;
    this.#picture.removeAttribute('src');
    this.#note.textContent = text;
  }

  /** Shows a picture (a Blob of SVG) of so many places. */
  show(blob, size, name) {
    this.clear('');
    this.#size = size;
    this.#url = URL.createObjectURL(blob);
    this.#picture.src = this.#url;
    this.#picture.alt = `Plan of ${name} with ${size.marks} places; all of them are in the table.`;
    this.#ring.hidden = true;
    this.#sheet.hidden = false;
    this.#fit();
  }

  /** Marks a place {x, y}, or none, and brings it into view. */
  mark(place) {
    this.#ring.hidden = !this.#size || place?.x === undefined;
    if (this.#ring.hidden)
      return;
    this.#ring.dataset.x = place.x;
    this.#ring.dataset.y = place.y;
    this.#ring.title = place.name;
    this.#putRing();
    const { clientWidth, clientHeight, scrollLeft, scrollTop } = this.#scroller;
    const [x, y] = [place.x * this.#zoom, place.y * this.#zoom];
    if (x < scrollLeft || x > scrollLeft + clientWidth || y < scrollTop || y > scrollTop + clientHeight)
      this.#scroller.scrollTo(x - clientWidth / 2, y - clientHeight / 2);
  }

  #putRing() {
    this.#ring.style.left = `${this.#ring.dataset.x * this.#zoom}px`;
    this.#ring.style.top = `${this.#ring.dataset.y * this.#zoom}px`;
  }

  #fit() {
    if (!this.#size)
      return;
    this.#isFit = true;
    const { offsetWidth, offsetHeight } = this.#scroller; // scroll bars go
    this.#setZoom(Math.min((offsetWidth - BORDERS) / this.#size.width, (offsetHeight - BORDERS) / this.#size.height));
  }

  /** Zooms so that what is under the pointer, or in the middle, stays there. */
  #zoomBy(factor, event) {
    if (!this.#size)
      return;
    const box = this.#scroller.getBoundingClientRect();
    const x = event ? event.clientX - box.left : box.width / 2;
    const y = event ? event.clientY - box.top : box.height / 2;
    this.#isFit = false;
    const before = this.#zoom;
    const [left, top] = [this.#scroller.scrollLeft + x, this.#scroller.scrollTop + y];
    this.#setZoom(before * factor);
    this.#scroller.scrollTo(left * this.#zoom / before - x, top * this.#zoom / before - y);
  }

  #setZoom(zoom) {
    this.#zoom = Math.min(Math.max(zoom, SMALLEST), LARGEST);
    this.#sheet.style.width = `${this.#size.width * this.#zoom}px`;
    this.#sheet.style.height = `${this.#size.height * this.#zoom}px`;
    this.#putRing();
  }

  #key(event) {
    if (event.ctrlKey || event.metaKey || event.altKey) // the browser's own
      return;
    const factor = { '+': 1.5, '=': 1.5, '-': 1 / 1.5 }[event.key];
    if (factor)
      this.#zoomBy(factor);
    else if (event.key === '0')
      this.#fit();
  }

  async #click(event) {
    if (this.#isMoved) // it was taken there to move the sheet
      return;
    const box = this.#picture.getBoundingClientRect();
    const place = await this.#ask('markAt', (event.clientX - box.left) / this.#zoom,
                                  (event.clientY - box.top) / this.#zoom, REACH / this.#zoom);
    if (place?.row !== undefined)
      this.#choose(place.row);
  }

  #dragToMove() {
    let from = null;
    this.#scroller.addEventListener('pointerdown', (event) => {
      if (event.button === 0 && event.pointerType === 'mouse')
        from = {
          x: event.clientX, y: event.clientY, left: this.#scroller.scrollLeft, top: this.#scroller.scrollTop,
        };
      this.#isMoved = false;
    });
    addEventListener('pointermove', (event) => {
      if (!from || !(event.buttons & 1)) {
        from = null;
        return;
      }
      const [x, y] = [event.clientX - from.x, event.clientY - from.y];
      this.#isMoved ||= Math.hypot(x, y) > 4;
      this.#scroller.scrollTo(from.left - x, from.top - y);
    });
  }
}
