// The page: takes files, and shows what became of them.

import { Client } from './client.js';
import { byId } from './dom.js';
import { Files } from './files.js';
import { View } from './view.js';

/** The module's bytes, as they lie in the page: compressed, in base 64. */
async function moduleBytes() {
  const packed = Uint8Array.from(atob(byId('module').textContent.trim()), (c) => c.charCodeAt(0));
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('gzip'));
  return new Response(stream).arrayBuffer();
}

/** The files of what was dropped, those in folders among them. */
async function droppedFiles(transfer) {
  const entries = [...transfer.items].map((item) => item.webkitGetAsEntry?.()).filter(Boolean);
  if (entries.length === 0)
    return [...transfer.files];
  const files = [];
  const visit = async (entry) => {
    if (entry.isFile) {
      files.push(await new Promise((resolve, reject) => entry.file(resolve, reject)));
      return;
    }
    const reader = entry.createReader();
    for (;;) {
      const inside = await new Promise((resolve, reject) => reader.readEntries(resolve, reject));
      if (inside.length === 0)
        return;
      for (const one of inside)
        await visit(one);
    }
  };
  for (const entry of entries)
    await visit(entry);
  return files;
}

function takeFiles(files) {
  byId('choose').addEventListener('change', (event) => {
    files.add(event.target.files);
    event.target.value = '';
  });
  let over = 0;
  addEventListener('dragenter', (event) => { event.preventDefault(); ++over; document.body.classList.add('over'); });
  addEventListener('dragleave', () => { if (--over <= 0) document.body.classList.remove('over'); });
  addEventListener('dragover', (event) => event.preventDefault());
  addEventListener('drop', async (event) => {
    event.preventDefault();
    over = 0;
    document.body.classList.remove('over');
    files.add(await droppedFiles(event.dataTransfer));
  });
}

async function formatsOf(environment) {
  const client = new Client(environment.workerSource, environment.module, () => {});
  try {
    return await client.call('formats');
  } finally {
    client.close();
  }
}

async function start() {
  const code = new Blob([byId('worker').textContent], { type: 'text/javascript' });
  const environment = {
    workerSource: URL.createObjectURL(code),
    module: await WebAssembly.compile(await moduleBytes()),
  };
  const say = (text) => { byId('said').textContent = text; };
  let files = null;
  const view = new View(await formatsOf(environment), (entry) => files.again(entry), say);
  files = new Files(byId('files'), environment, (entry) => view.show(entry), say);
  takeFiles(files);
  byId('choose').disabled = false;
  byId('drop-text').textContent = 'Drop files here, or choose them';
}

start().catch((error) => {
  byId('drop-text').textContent = `This browser cannot run the page: ${error.message}`;
});
