// The file that was chosen: how it was read, its field book, its drawing and its lines. What is clicked in one of them
// is shown in the others.

import { byId, counted, element } from './dom.js';
import { Drawing } from './drawing.js';
import { List } from './list.js';

const KINDS = {
  document: 'Document', job: 'Job', station: 'Station', point: 'Point', known: 'Known point', line: 'Line',
};
const MOST_DRAWN = 200000; // rows; the drawing of more is too much for a browser
const NUMBERS = [2, 3, 4, 5, 6, 7, 8]; // columns that are aligned to the right

const DOWNLOADS = {
  json: { label: 'JSON', ending: 'json', type: 'application/json' },
  csv: { label: 'CSV', ending: 'csv', type: 'text/csv' },
  points: { label: 'Points (CSV)', ending: 'points.csv', type: 'text/csv' },
  dxf: { label: 'DXF', ending: 'dxf', type: 'image/vnd.dxf' },
  svg: { label: 'SVG', ending: 'svg', type: 'image/svg+xml' },
};

export class View {
  #entry = null;
  #overview = null;
  #table;
  #lines;
  #drawing;
  #say;

  /** `again(entry)`: something else was chosen for it; `say(text)` aloud. */
  constructor(formats, again, say) {
    this.#say = say;
    const ask = async (call, ...args) => this.#entry.ask(call, ...args);
    this.#table = new List(byId('table'), {
      rowHeight: 26, headHeight: 54, idPrefix: 'row-', role: 'row', indexAttribute: 'aria-rowindex',
      fetch: (first, count) => ask('rows', first, count),
      render: (row) => this.#cells(row),
      className: (row) => row[0],
      choose: (index, row) => this.#showRow(index, row[1]),
    });
    this.#lines = new List(byId('lines'), {
      rowHeight: 20, idPrefix: 'line-', role: 'option', indexAttribute: 'aria-posinset',
      fetch: (first, count) => ask('lines', first, count),
      render: (line, index) => [element('span', { class: 'number' }, String(index + 1)), element('span', {}, line)],
      className: () => '',
      choose: (index) => this.showLine(index + 1, 'lines'),
    });
    this.#drawing = new Drawing(
      { scroller: byId('drawing'), note: byId('drawing-note'), zoomIn: byId('zoom-in'), zoomOut: byId('zoom-out'),
        fit: byId('zoom-fit') },
      (call, ...args) => this.#answer(call, ...args), (row) => this.#showPlace(row));
    byId('format').append(...formats.map(({ name, title }) => element('option', { value: name }, `${name} – ${title}`)));
    byId('format').addEventListener('change', () => this.#choose(again, { format: byId('format').value }));
    byId('complete').addEventListener('change', () => this.#choose(again, { complete: byId('complete').checked }));
    byId('downloads').append(...Object.entries(DOWNLOADS).map(([view, { label }]) => element('button', {
      type: 'button', 'data-view': view, onclick: () => this.#download(view),
    }, label)));
  }

  /** Shows a file as it is now; none where it is null. */
  show(entry) {
    const other = entry !== this.#entry;
    this.#entry = entry;
    byId('nothing').hidden = entry !== null;
    byId('file').hidden = entry === null;
    if (!entry)
      return;
    byId('name').textContent = entry.path;
    byId('format').value = entry.format;
    byId('complete').checked = entry.complete;
    this.#showState(entry);
    if (other || entry.overview !== this.#overview)
      this.#fill(entry);
  }

  /** Shows a line of the file (from 1), and what it became. */
  async showLine(line, from) {
    const row = await this.#answer('rowOfLine', line);
    if (row === null)
      return;
    this.#showInLines(line);
    this.#table.show(row);
    this.#mark(row);
    if (from !== 'lines')
      this.#say(`line ${line}`);
  }

  /** What the engine answers; null where the file is no longer shown as it was, or its worker has ended. */
  async #answer(call, ...args) {
    const [entry, overview] = [this.#entry, this.#overview];
    try {
      const answer = await entry.ask(call, ...args);
      return entry === this.#entry && overview === this.#overview ? answer : null;
    } catch {
      return null; // the file's state says why
    }
  }

  #choose(again, values) {
    this.#entry.choose(values);
    again(this.#entry);
  }

  #showState(entry) {
    const { overview } = entry;
    const state = byId('state');
    state.classList.toggle('bad', entry.status === 'failed' || overview?.converted === false);
    byId('progress').hidden = entry.status !== 'converting';
    byId('progress').max = entry.file.size || 1;
    byId('progress').value = entry.converted;
    if (entry.status === 'waiting' || entry.status === 'converting' || !overview) {
      state.textContent = entry.problem || `${entry.status} …`;
      return;
    }
    const problem = entry.file.size === 0 ? 'the file is empty' : /job database/.test(overview.problem)
      ? `${overview.problem}: a browser cannot read it, the program does` : overview.problem;
    const how = overview.byContent ? `${overview.format}, by its content` : overview.format;
    state.textContent = overview.converted ? `read as ${how}: ${overview.summary.split('; read as ')[0]}`
      : `not converted: ${problem}`;
  }

  #fill(entry) {
    const { overview } = entry;
    this.#overview = overview;
    for (const button of byId('downloads').children)
      button.disabled = !overview || (!overview.converted && button.dataset.view !== 'json');
    this.#fillRemarks(overview);
    const heads = overview?.heads ?? [];
    byId('heads').replaceChildren(...['Record', 'Line', ...heads].map((head, i) => element('span', {
      role: 'columnheader', class: NUMBERS.includes(i - 2) ? 'right' : '',
    }, head)));
    byId('table').setAttribute('aria-rowcount', (overview?.rows ?? 0) + 1);
    this.#table.reset(overview?.rows ?? 0);
    this.#lines.reset(overview?.lines ?? 0);
    byId('raw-note').textContent = overview?.format === 'mts' ? 'This format has no lines: its records are counted.' : '';
    this.#fillDrawing(entry);
  }

  #fillRemarks(overview) {
    const account = byId('account');
    account.textContent = overview?.converted
      ? `${counted(overview.accountLines, 'line')}: ${overview.read.toLocaleString('en')} read, ` +
        `${overview.skipped.toLocaleString('en')} skipped.` + (overview.remarks.length === 0 ? ' No remarks.' : '')
      : '';
    byId('remarks').replaceChildren(...(overview?.remarks ?? []).map((remark) => this.#remark(remark)));
  }

  #remark({ kind, text, count, lines, last }) {
    const buttons = lines.map((line) => element('button', {
      type: 'button', class: 'line', 'aria-label': `line ${line}`, onclick: () => this.showLine(line),
    }, String(line)));
    const rest = count > lines.length && lines.length > 0;
    return element('li', {},
      element('span', { class: 'kind' }, kind.replace('-', ' ')), element('span', { class: 'text' }, `${text} `),
      element('span', { class: 'lines' }, lines.length > 0 ? `${counted(count, 'line')}: ` : count > 1 ? `${count} times` : '',
              ...buttons, ...(rest ? [`… to ${last}`] : [])));
  }

  async #fillDrawing(entry) {
    const overview = entry.overview;
    this.#drawing.clear('');
    if (!overview?.converted)
      return;
    if (overview.rows > MOST_DRAWN) {
      this.#drawing.clear(`${counted(overview.rows, 'row')} are too many to draw here: download the drawing.`);
      return;
    }
    await new Promise(requestAnimationFrame); // the table and the lines in view come first
    await new Promise(requestAnimationFrame);
    if (entry !== this.#entry || overview !== this.#overview)
      return;
    const size = await this.#answer('drawingSize');
    const blob = size && await this.#answer('render', 'svg', DOWNLOADS.svg.type);
    if (!blob)
      return;
    this.#drawing.show(blob, size, entry.name);
    this.#mark(this.#table.active);
  }

  #cells([kind, line, ...cells]) {
    return [
      element('span', { role: 'gridcell', class: 'kind' }, KINDS[kind]),
      element('span', { role: 'gridcell', class: 'right number' }, line === 0 ? '' : String(line)),
      ...cells.map((cell, i) => element('span', { role: 'gridcell', class: NUMBERS.includes(i) ? 'right' : '', title: cell }, cell)),
    ];
  }

  #showRow(row, line) {
    this.#showInLines(line);
    this.#mark(row);
  }

  /** Not where nothing of the file is a line: records are counted then. */
  #showInLines(line) {
    if (line > 0 && line <= this.#overview.lines)
      this.#lines.show(line - 1);
  }

  async #showPlace(row) {
    const rows = await this.#answer('rows', row, 1);
    if (!rows)
      return;
    const [shown] = rows;
    this.#table.show(row);
    this.#showRow(row, shown[1]);
    this.#say(`${KINDS[shown[0]]} ${shown[2]}, line ${shown[1]}`);
  }

  async #mark(row) {
    if (this.#drawing.isShown)
      this.#drawing.mark(row < 0 ? null : await this.#answer('markOfRow', row));
  }

  async #download(view) {
    const { ending, type } = DOWNLOADS[view];
    const { name } = this.#entry;
    let blob;
    try {
      blob = await this.#entry.ask('render', view, type);
    } catch {
      this.#say(`${name} was not saved`);
      return;
    }
    const url = URL.createObjectURL(blob);
    const stem = name.lastIndexOf('.') > 0 ? name.slice(0, name.lastIndexOf('.')) : name;
    const link = element('a', { href: url, download: `${stem}.${ending}` });
    document.body.append(link);
    link.click();
    link.remove();
    setTimeout(() => URL.revokeObjectURL(url), 60000);
    this.#say(`${link.download} is saved`);
  }
}
