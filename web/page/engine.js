// The module: files go in, and texts about them come out.

import { wasi } from './wasi.js';

/** The browser has no more memory for the module. */
export class OutOfMemory extends Error {}

/** The file is no longer what was chosen. */
export class Unreadable extends Error {}

const LARGEST = 0xf0000000; // the module has addresses of 32 bits

const utf8 = new TextEncoder();
const text = new TextDecoder();

/** One file in an instance of the module. */
export class Engine {
  #exports;
  #session = 0;
  #pieces = [];

  /** `progress` is told of the bytes that were converted so far. */
  static async start(module, progress) {
    const engine = new Engine();
    const memory = () => engine.#exports.memory;
    const instance = await WebAssembly.instantiate(module, {
      wasi_snapshot_preview1: wasi(memory),
      page: {
        write: (at, size) => engine.#pieces.push(engine.#bytes(at, size).slice()),
        progress,
        outOfMemory: () => { throw new OutOfMemory(); },
      },
    });
    engine.#exports = instance.exports;
    instance.exports._initialize();
    return engine;
  }

  /** Takes a file's bytes, as they come from the disk. */
  async load(file) {
    this.#session = file.size <= LARGEST ? this.#exports.open(file.size) : 0;
    if (!this.#session)
      throw new OutOfMemory();
    let at = this.#exports.bytes(this.#session) >>> 0;
    let left = file.size;
    const reader = file.stream().getReader();
    for (;;) {
      const { done, value } = await reader.read().catch(() => { throw new Unreadable(); });
      if (done)
        break;
      const piece = value.subarray(0, left); // a file may grow meanwhile
      this.#bytes(at, piece.length).set(piece);
      at += piece.length;
      left -= piece.length;
    }
    if (left > 0) // it has become shorter
      throw new Unreadable();
  }

  convert(name, format, complete) {
    const names = [utf8.encode(name), utf8.encode(format)];
    const at = this.#exports.room(names[0].length + names[1].length + 1);
    this.#bytes(at, names[0].length).set(names[0]);
    this.#bytes(at + names[0].length, names[1].length).set(names[1]);
    this.#exports.convert(this.#session, at, names[0].length, at + names[0].length, names[1].length,
                          complete ? 1 : 0);
    return this.overview();
  }

  overview() { return this.#json(this.#exports.overview(this.#session)); }
  rows(first, count) { return this.#json(this.#exports.rows(this.#session, first, count)); }
  lines(first, count) { return this.#json(this.#exports.lines(this.#session, first, count)); }
  rowOfLine(line) { return this.#exports.rowOfLine(this.#session, line); }
  formats() { return this.#json(this.#exports.formats()); }
  drawingSize() { return this.#json(this.#exports.drawingSize(this.#session)); }
  markAt(x, y, farthest) { return this.#json(this.#exports.markAt(this.#session, x, y, farthest)); }
  markOfRow(row) { return this.#json(this.#exports.markOfRow(this.#session, row)); }

  /** What the program would write: json, csv, points, dxf, svg, ... */
  render(view, type) {
    const name = utf8.encode(view);
    const at = this.#exports.room(name.length);
    this.#bytes(at, name.length).set(name);
    this.#pieces = [];
    this.#exports.render(this.#session, at, name.length);
    const blob = new Blob(this.#pieces, { type });
    this.#pieces = [];
    return blob;
  }

  // Addresses come as signed numbers: beyond 2 GiB they are negative.
  #bytes(at, size) { return new Uint8Array(this.#exports.memory.buffer, at >>> 0, size >>> 0); }

  #json(answer) {
    const [at, size] = new Uint32Array(this.#exports.memory.buffer, answer >>> 0, 2);
    return JSON.parse(text.decode(this.#bytes(at, size)));
  }
}
