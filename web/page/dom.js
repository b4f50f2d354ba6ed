// Elements, made without markup: texts of files are texts, whatever is in them.

export const byId = (id) => document.getElementById(id);

/** An element with attributes (on...: listeners), and children that are elements or texts. */
export function element(name, attributes = {}, ...children) {
  const made = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith('on'))
      made.addEventListener(key.slice(2), value);
    else if (value === true)
      made.setAttribute(key, '');
    else if (value !== false && value !== null && value !== undefined)
      made.setAttribute(key, value);
  }
  made.append(...children);
  return made;
}

/** "1 line", "2 lines". */
export function counted(count, one) {
  return `${count.toLocaleString('en')} ${one}${count === 1 ? '' : 's'}`;
}

/** Bytes as people write them. */
export function shownSize(bytes) {
  if (bytes < 1000)
    return counted(bytes, 'byte');
  const units = ['kB', 'MB', 'GB'];
  let value = bytes / 1000;
  let unit = 0;
  for (; value >= 1000 && unit + 1 < units.length; ++unit)
    value /= 1000;
  return `${value.toFixed(value < 10 ? 1 : 0)} ${units[unit]}`;
}
