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

/** All files below a folder, each with its path. */
async function inFolder(handle, path, found) {
  for await (const inside of handle.values()) {
    if (inside.kind === 'directory')
      await inFolder(inside, `${path}${inside.name}/`, found);
    else
      found.push({ file: await inside.getFile(), path: path + inside.name });
  }
}

/** The same where the browser has older ways. */
async function inEntry(entry, path, found) {
  if (entry.isFile) {
    found.push({ file: await new Promise((resolve, reject) => entry.file(resolve, reject)), path: path + entry.name });
    return;
  }
  const reader = entry.createReader();
  for (;;) {
    const inside = await new Promise((resolve, reject) => reader.readEntries(resolve, reject));
    if (inside.length === 0)
      return;
    for (const one of inside)
      await inEntry(one, `${path}${entry.name}/`, found);
  }
}

/** The files of what was dropped, those in folders among them; what cannot be read is named in `failed`. */
async function droppedFiles(transfer, failed) {
  // All that the browser gives it gives now, and not after a while.
  const items = [...transfer.items].filter((item) => item.kind === 'file').map((item) => {
    const entry = item.webkitGetAsEntry?.();
    const isFolder = entry?.isDirectory ?? false;
    return { file: item.getAsFile(), entry, isFolder, handle: isFolder ? item.getAsFileSystemHandle?.() : null };
  });
  const found = [];
  for (const { file, entry, isFolder, handle } of items) {
    try {
      if (!isFolder)
        found.push({ file, path: file.name });
      else if (handle)
        await inFolder(await handle, `${entry.name}/`, found);
      else
        await inEntry(entry, '', found);
    } catch {
      failed.push(entry?.name ?? file?.name);
    }
  }
  return found;
}

/** `add` takes files: {file, path}; `say` says aloud what could not be read. */
function takeFiles(add, say) {
  byId('choose').addEventListener('change', (event) => {
    add([...event.target.files].map((file) => ({ file, path: file.name })));
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
    const failed = [];
    add(await droppedFiles(event.dataTransfer, failed));
    if (failed.length > 0)
      say(`${failed.join(', ')} cannot be read`);
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
  for (const kind of ['dragover', 'drop']) // what comes too early is not to take the page's place
    addEventListener(kind, (event) => event.preventDefault());
  const code = new Blob([byId('worker').textContent], { type: 'text/javascript' });
  const environment = {
    workerSource: URL.createObjectURL(code),
    module: await WebAssembly.compile(await moduleBytes()),
  };
  const say = (text) => { byId('said').textContent = text; };
  let files = null;
  const view = new View(await formatsOf(environment), (entry) => files.again(entry), say);
  files = new Files(byId('files'), environment, (entry) => view.show(entry), say);
  takeFiles((some) => files.add(some), say);
  byId('choose').disabled = false;
  byId('drop-text').textContent = 'Drop files here, or choose them';
}

start().catch((error) => {
  byId('drop-text').textContent = `This browser cannot run the page: ${error.message}`;
});
