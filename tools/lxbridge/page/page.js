'use strict';
// The page of one file: the tree of items, their bytes, and the XMP properties. Texts of the file are always inserted
// as text, never as markup. Only visible rows are in the document, so large files stay fast.
(() => {
  const ROW = 20;  // Pixels, as in the style.
  const data = JSON.parse(document.getElementById('data').textContent);
  const items = data.items;
  const element = (name, className, text) => {
    const made = document.createElement(name);
    if (className) made.className = className;
    if (text !== undefined) made.textContent = text;
    return made;
  };
  const controls = /[\u0000-\u001f\u007f-\u009f\u061c\u200e\u200f\u2028-\u202e\u2066-\u2069]/g;
  const shown = (text) => String(text !== null && typeof text === 'object' ? 'hex ' + text.hex : text)
      .replace(controls, (c) => '\\u' + c.charCodeAt(0).toString(16).padStart(4, '0'));
  const hex = (number, digits) => number.toString(16).padStart(digits, '0');

  // A scrolling list of rows of equal height.
  class List {
    constructor(box, make) {
      this.box = box;
      this.make = make;
      this.count = 0;
      this.whole = false;
      this.rows = element('div', 'rows');
      box.append(this.rows);
      box.addEventListener('scroll', () => this.draw());
      new ResizeObserver(() => this.draw()).observe(box);
    }
    setCount(count) {
      this.count = count;
      this.draw();
    }
    draw() {
      this.rows.style.height = this.count * ROW + 'px';
      const first = this.whole ? 0 : Math.max(0, Math.floor(this.box.scrollTop / ROW) - 5);
      const last = this.whole ? this.count : Math.min(this.count, first + Math.ceil(this.box.clientHeight / ROW) + 10);
      const made = [];
      for (let i = first; i < last; ++i) {
        const row = this.make(i);
        row.style.top = i * ROW + 'px';
        made.push(row);
      }
      this.rows.replaceChildren(...made);
    }
    show(index) {
      const top = index * ROW;
      if (top < this.box.scrollTop || top + ROW > this.box.scrollTop + this.box.clientHeight) {
        this.box.scrollTop = Math.max(0, top - this.box.clientHeight / 2);
      }
      this.draw();
    }
  }

  let selected = -1;
  const folded = new Set();
  let visible = [];  // Indexes of the items in the tree's rows.
  let filter = '';

  const parents = [];
  items.forEach((item, i) => {
    let parent = i - 1;
    while (parent >= 0 && items[parent].depth >= item.depth) parent = parents[parent];
    parents.push(parent);
  });
  const hasChildren = (i) => i + 1 < items.length && items[i + 1].depth > items[i].depth;

  // --- bytes: for each, the innermost item that it belongs to, and its role there

  const regions = data.regions.map((region) => {
    const text = atob(region.bytes);
    const bytes = Uint8Array.from(text, (c) => c.charCodeAt(0));
    return {offset: region.offset, bytes, owner: new Int32Array(bytes.length).fill(-1), kind: new Uint8Array(bytes.length)};
  });
  const KINDS = ['', 'header', 'entry', 'value'];
  const regionAt = (offset) => {
    let low = 0, high = regions.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (regions[middle].offset <= offset) low = middle + 1; else high = middle;
    }
    const region = regions[low - 1];
    return region && offset < region.offset + region.bytes.length ? region : null;
  };
  const ranges = [];
  items.forEach((item, i) => {
    if (item.header) ranges.push([item.header[0], item.header[1], i, 1]);
    if (item.entry) ranges.push([item.entry[0], item.entry[1], i, 2]);
    if (item.offset !== null && item.length > 0) ranges.push([item.offset, item.length, i, 3]);
  });
  // Wide ranges first, so that ranges inside them stay on top; a value takes precedence over an entry of the same
  // length.
  ranges.sort((a, b) => b[1] - a[1] || a[3] - b[3]);
  for (const [offset, length, owner, kind] of ranges) {
    const region = regionAt(offset);
    if (!region) continue;
    const begin = offset - region.offset, end = Math.min(begin + length, region.bytes.length);
    region.owner.fill(owner, begin, end);
    region.kind.fill(kind, begin, end);
  }
  const hexRows = [];  // [region, first byte]; null: a gap.
  regions.forEach((region, r) => {
    if (r > 0) hexRows.push(null);
    for (let at = 0; at < region.bytes.length; at += 16) hexRows.push([region, at]);
  });
  const rowOfOffset = (offset) => {
    let row = 0;
    for (const region of regions) {
      if (offset >= region.offset && offset < region.offset + region.bytes.length) return row + ((offset - region.offset) >> 4);
      row += Math.ceil(region.bytes.length / 16) + 1;
    }
    return -1;
  };
  const isChosen = (offset) => {
    if (selected < 0) return false;
    const item = items[selected];
    const within = (begin, length) => offset >= begin && offset < begin + length;
    return (item.offset !== null && within(item.offset, item.length)) || (item.entry && within(...item.entry)) ||
        (item.header && within(...item.header));
  };
  const makeHexRow = (i) => {
    const row = element('div', 'row hex');
    if (!hexRows[i]) {
      row.textContent = '…';
      return row;
    }
    const [region, begin] = hexRows[i];
    row.append(hex(region.offset + begin, 8) + '  ');
    // Adjacent bytes of the same item and role are one element.
    const end = Math.min(begin + 16, region.bytes.length);
    for (const text of [false, true]) {
      for (let at = begin; at < end;) {
        const owner = region.owner[at], kind = region.kind[at], chosen = isChosen(region.offset + at);
        const parts = [];
        do {
          const byte = region.bytes[at];
          parts.push(text ? (byte >= 0x20 && byte < 0x7f ? String.fromCharCode(byte) : '.') : hex(byte, 2));
          ++at;
        } while (at < end && region.owner[at] === owner && region.kind[at] === kind && isChosen(region.offset + at) === chosen);
        const run = element('span', (text ? 'text ' : '') + (chosen ? 'chosen' : KINDS[kind]), parts.join(text ? '' : ' '));
        run.dataset.owner = owner;
        row.append(run, text ? '' : ' ');
      }
      if (!text) row.append(' '.repeat(3 * (begin + 16 - end) + 1));
    }
    return row;
  };

  // --- the tree

  const matches = (item) => [item.namespace, item.name, item.display, item.type, hex(item.tag, 4)]
      .some((text) => shown(text).toLowerCase().includes(filter));
  const layOut = () => {
    visible = [];
    if (filter !== '') {
      const kept = new Set();
      for (let i = items.length - 1; i >= 0; --i) {
        if (kept.has(i) || matches(items[i])) {
          kept.add(i);
          if (parents[i] >= 0) kept.add(parents[i]);
        }
      }
      visible = [...kept].sort((a, b) => a - b);
    } else {
      let below = Infinity;
      items.forEach((item, i) => {
        if (item.depth > below) return;
        below = folded.has(i) ? item.depth : Infinity;
        visible.push(i);
      });
    }
    tree.setCount(visible.length);
  };
  const makeTreeRow = (i) => {
    const number = visible[i], item = items[number];
    const row = element('div', 'row' + (item.deleted ? ' deleted' : '') + (number === selected ? ' selected' : ''));
    row.dataset.item = number;
    row.append(' '.repeat(2 * item.depth));
    row.append(element('span', 'fold', hasChildren(number) ? (folded.has(number) && filter === '' ? '▸' : '▾') : ''));
    row.append(element('span', 'space', shown(item.namespace)), ' ', element('span', 'name', shown(item.name)), '  ',
        element('span', '', shown(item.display).slice(0, 200)));
    return row;
  };
  const makePropertyRow = (i) => {
    const property = data.properties[i];
    const row = element('div', 'row' + (property.item !== null && property.item === selected ? ' selected' : ''));
    row.dataset.property = i;
    row.append(element('span', 'name', shown(property.name)), '  ', element('span', '', shown(property.value).slice(0, 400)), '  ',
        element('span', 'space', '← ' + (property.item === null ? property.from : property.from + ' ' + shown(items[property.item].name))));
    return row;
  };

  const tree = new List(document.getElementById('tree'), makeTreeRow);
  const bytes = new List(document.getElementById('bytes'), makeHexRow);
  const properties = new List(document.getElementById('properties'), makePropertyRow);

  const describe = () => {
    const list = document.getElementById('details');
    list.replaceChildren();
    if (selected < 0) return;
    const item = items[selected];
    const add = (name, value) => list.append(element('dt', '', name), element('dd', '', shown(value)));
    add('item', shown(item.namespace) + ' ' + shown(item.name) + (item.deleted ? ' (deleted)' : ''));
    add('tag', item.tag + ' (0x' + hex(item.tag, 4) + ')');
    add('type', item.type + ' (' + item.typeCode + ')');
    add('flags', '0x' + hex(item.flags, 3));
    add('value', item.length + ' bytes' + (item.offset === null ? ', not in the file as they are' : ' at ' + item.offset + ' (0x' + hex(item.offset, 1) + ')'));
    if (item.entry) add('entry', item.entry[1] + ' bytes at ' + item.entry[0]);
    if (item.header) add('header', item.header[1] + ' bytes at ' + item.header[0]);
    if (item.value) add('bytes', item.value);
    add('display', item.display);
    if (item.label) add('label', item.label);
    if (item.valueLabel) add('value label', item.valueLabel);
  };
  // Selects an item and shows it in both views, except in the one that was clicked.
  const select = (number, from) => {
    selected = number;
    if (number >= 0) {
      for (let parent = parents[number]; parent >= 0; parent = parents[parent]) folded.delete(parent);
      if (filter !== '' && !visible.includes(number)) {
        filter = document.getElementById('filter').value = '';
      }
    }
    layOut();
    if (number >= 0 && from !== tree) tree.show(visible.indexOf(number));
    if (number >= 0 && from !== bytes) {
      const item = items[number];
      const offset = item.offset !== null && item.length > 0 ? item.offset : item.entry ? item.entry[0] : item.header ? item.header[0] : -1;
      const row = rowOfOffset(offset);
      if (row >= 0) bytes.show(row);
    }
    const property = data.properties.findIndex((each) => each.item === number && number >= 0);
    if (property >= 0 && from !== properties) properties.show(property);
    for (const list of [tree, bytes, properties]) list.draw();
    describe();
  };

  document.getElementById('tree').addEventListener('click', (event) => {
    const row = event.target.closest('.row');
    if (!row) return;
    const number = Number(row.dataset.item);
    if (event.target.classList.contains('fold') && hasChildren(number)) {
      if (!folded.delete(number)) folded.add(number);
      layOut();
      return;
    }
    select(number, tree);
  });
  document.getElementById('bytes').addEventListener('click', (event) => {
    const owner = Number(event.target.dataset.owner ?? -1);
    if (owner >= 0) select(owner, bytes);
  });
  document.getElementById('properties').addEventListener('click', (event) => {
    const row = event.target.closest('.row');
    const property = row && data.properties[Number(row.dataset.property)];
    if (property && property.item !== null) select(property.item, properties);
  });
  document.getElementById('filter').addEventListener('input', (event) => {
    filter = event.target.value.toLowerCase();
    layOut();
  });
  document.getElementById('tree').addEventListener('keydown', (event) => {
    const step = {ArrowDown: 1, ArrowUp: -1}[event.key];
    if (!step || visible.length === 0) return;
    event.preventDefault();
    const at = Math.min(visible.length - 1, Math.max(0, visible.indexOf(selected) + step));
    select(visible[at], null);
  });
  const setWhole = (whole) => {
    for (const list of [tree, bytes, properties]) {
      list.whole = whole;
      list.draw();
    }
  };
  addEventListener('beforeprint', () => setWhole(true));
  addEventListener('afterprint', () => setWhole(false));

  document.title = shown(data.file);
  document.getElementById('file').textContent = shown(data.file);
  document.getElementById('status').textContent = data.statusName;
  if (data.status < 0) document.getElementById('status').className = 'bad';
  document.getElementById('attributes').textContent =
      Object.entries(data.attributes).map(([name, value]) => name + ' ' + value).join(', ') + (data.cut ? '; bytes of large values are cut' : '');
  layOut();
  bytes.setCount(hexRows.length);
  properties.setCount(data.properties.length);
  document.body.dataset.ready = 'yes';
})();
