
// A live mind map. The topics and the sizes of their boxes stand in the page as JSON; PlaceBoxes, which places the
// boxes, is the program's own, compiled to WebAssembly. Texts of the outline become text nodes and attributes only.

const element = id => document.getElementById(id);
const data = JSON.parse(element('data').textContent);
const topics = data.topics, count = topics.length;
const words = document.body.dataset;  // in the user's language

const GLIDE = 250;           // milliseconds
const READABLE = 0.75;       // the scale at which the smallest text can still be read
const SMALLEST_DRAWN = 0.4;  // below it, or
const MOST_DRAWN = 800;      // with more topics in view, shapes are drawn without their texts
const ROW = 28;              // the height of a row of the outline
const TURN_RADIUS = 6;

// The tree. Topics stand in the order of the outline: descendants follow their ancestor without a gap.

const level = new Int32Array(count), branch = new Int32Array(count), childCount = new Int32Array(count);
const end = new Int32Array(count).fill(1);  // behind the last descendant
const position = new Int32Array(count);     // among its siblings, from 1
let deepest = 0, branchCount = 0;
for (let i = 1; i < count; ++i) {
  const parent = topics[i].parent;
  level[i] = level[parent] + 1;
  deepest = Math.max(deepest, level[i]);
  branch[i] = level[i] === 1 ? branchCount++ : branch[parent];
  position[i] = ++childCount[parent];
}
for (let i = count - 1; i > 0; --i) {
  end[i] = Math.max(end[i], i + 1);
  end[topics[i].parent] = Math.max(end[topics[i].parent], end[i]);
}
const below = i => end[i] - i - 1;
const styleOf = i => data.levels[Math.min(level[i], data.levels.length - 1)];
const lineLooks = topics.map((topic, i) => i === 0 ? 'l0' : `b${branch[i] % data.branchCount}`);
const looks = topics.map((topic, i) => i === 0 ? 'l0' : `${lineLooks[i]} l${Math.min(level[i], 4)}`);

// Which branches are folded. The address tells it as a level and the topics that differ from it.

const isFolded = new Uint8Array(count);
let baseLevel = 1, chosen = 0;
const isFoldedAt = (i, atLevel) => i > 0 && childCount[i] > 0 && level[i] >= atLevel ? 1 : 0;

function foldAt(atLevel) {
  baseLevel = atLevel;
  for (let i = 0; i < count; ++i) isFolded[i] = isFoldedAt(i, atLevel);
}

function unfoldAbove(i) {
  for (let above = topics[i].parent; above > 0; above = topics[above].parent) isFolded[above] = 0;
}

function shownTopics() {
  const shown = [];
  for (let i = 0; i < count; i = isFolded[i] ? end[i] : i + 1) shown.push(i);
  return shown;
}

/** "#topic-a&level=2&topics=topic-b,topic-c*": b is folded where its level is not, or the reverse; below c all is unfolded. */
function address() {
  const isWhole = new Uint8Array(count).fill(1);
  for (let i = count - 1; i > 0; --i) if (isFolded[i] || !isWhole[i]) isWhole[topics[i].parent] = 0;
  const differing = [];
  for (let i = 1; i < count;) {
    const differs = isFolded[i] !== isFoldedAt(i, baseLevel), isAll = differs && !isFolded[i] && isWhole[i];
    if (differs) differing.push(encodeURIComponent(topics[i].id) + (isAll ? '*' : ''));
    i = isAll || isFolded[i] ? end[i] : i + 1;
  }
  return `#${encodeURIComponent(topics[chosen].id)}&level=${baseLevel}` +
    (differing.length ? `&topics=${differing.join(',')}` : '');
}

/** False when the address says nothing of this map. */
function readAddress() {
  const decode = text => { try { return decodeURIComponent(text); } catch { return ''; } };
  const indexes = new Map(topics.map((topic, i) => [topic.id, i]));
  const [id, ...parts] = location.hash.slice(1).split('&');
  if (!indexes.has(decode(id))) return false;
  const values = new Map(parts.map(part => part.split('=', 2)));
  foldAt(Number.parseInt(values.get('level'), 10) || openingLevel());
  for (const name of (values.get('topics') ?? '').split(',')) {
    const i = indexes.get(decode(name.replace(/\*$/, '')));
    if (i > 0 && name.endsWith('*')) isFolded.fill(0, i, end[i]);
    else if (i > 0 && childCount[i] > 0) isFolded[i] ^= 1;
  }
  chosen = indexes.get(decode(id));
  unfoldAbove(chosen);
  return true;
}

let addressTimer = 0;
function remember() {
  clearTimeout(addressTimer);
  addressTimer = setTimeout(() => history.replaceState(null, '', address()), 200);
}

// Places.

const bytes = Uint8Array.from(atob(element('module').textContent), c => c.charCodeAt(0));
const placement = (await WebAssembly.instantiate(bytes)).instance.exports;
placement._initialize();

/** A folded topic's box has room for the count of what is folded away. */
const badgeWidth = i => isFolded[i] ? 4 * Math.ceil((14 + 7 * String(below(i)).length) / 4) : 0;

/** Where the shown topics stand: six numbers each in `places` (PlacementModule.cpp), and the corners of their lines. */
function place(shown) {
  const indexes = new Int32Array(count).fill(-1), widths = new Float64Array(shown.length);
  const numbers = (address, length) => new Float64Array(placement.memory.buffer, address, length);
  const boxes = numbers(placement.placementBoxes(shown.length), shown.length * 5);
  for (const [n, i] of shown.entries()) {
    const { height, parent } = topics[i], { siblingGap, childGap } = styleOf(i);
    indexes[i] = n;
    widths[n] = topics[i].width + (shown.length === count ? 0 : badgeWidth(i));
    boxes.set([widths[n], height, i === 0 ? -1 : indexes[parent], siblingGap, childGap], n * 5);
  }
  const places = numbers(placement.placeBoxes(), shown.length * 6).slice();
  const points = numbers(placement.placedPoints(), 2 * placement.placedPointCount()).slice();
  const [left, top, right, bottom] = numbers(placement.placedBounds(), 4);
  return { shown, indexes, widths, places, points, left, top, right, bottom };
}

const isShown = (map, i) => map.indexes[i] >= 0;
const isLeft = (map, i) => map.places[map.indexes[i] * 6 + 2] > 0;
const topOf = (map, i) => map.places[map.indexes[i] * 6 + 1];
/** The left edge of a topic's shape; a badge stands on its outer side. */
function leftOf(map, i) {
  const n = map.indexes[i];
  return map.places[n * 6] + (isLeft(map, i) ? map.widths[n] - topics[i].width : 0);
}
const middleOf = i => [leftOf(map, i) + topics[i].width / 2, topOf(map, i) + topics[i].height / 2];

/** The line that leads to a topic: straight lines with round corners, or a curve from the parent's edge to the topic's. */
function lineTo(i) {
  const at = map.indexes[i] * 6, first = map.places[at + 4], last = first + map.places[at + 5] - 1;
  if (map.places[at + 3]) return curveTo(i);
  const x = n => map.points[2 * n], y = n => map.points[2 * n + 1];
  let path = `M${x(first)} ${y(first)}`;
  for (let n = first + 1; n < last; ++n) {
    const distance = m => Math.abs(x(m) - x(n)) + Math.abs(y(m) - y(n));
    const radius = Math.min(TURN_RADIUS, distance(n - 1) / 2, distance(n + 1) / 2);
    const towards = m => `${x(n) + radius * Math.sign(x(m) - x(n))} ${y(n) + radius * Math.sign(y(m) - y(n))}`;
    path += `L${towards(n - 1)}Q${x(n)} ${y(n)} ${towards(n + 1)}`;
  }
  return `${path}L${x(last)} ${y(last)}`;
}
function curveTo(i) {
  const parent = topics[i].parent, outward = isLeft(map, i) ? -1 : 1;
  const x = leftOf(map, i) + (outward < 0 ? topics[i].width : 0), y = topOf(map, i) + topics[i].height / 2;
  const a = topics[parent].width / 2, b = topics[parent].height / 2, [middleX, middleY] = middleOf(parent);
  if (parent !== 0) {
    const startX = middleX + outward * a, half = (x - startX) / 2;
    return `M${startX} ${middleY}C${startX + half} ${middleY} ${x - half} ${y} ${x} ${y}`;
  }
  const part = 1 / Math.hypot((x - middleX) / a, (y - middleY) / b);  // of the way, to the ellipse's edge
  const startX = middleX + (x - middleX) * part, startY = middleY + (y - middleY) * part, reach = x - startX;
  return `M${startX} ${startY}C${startX + reach * 0.25} ${startY + (y - startY) * 0.75} ${x - reach * 0.6} ${y} ${x} ${y}`;
}
/** Lines that leave the centre together have its color. */
const lineLook = i => level[i] === 1 && !map.places[map.indexes[i] * 6 + 3] ? 'line l0' : `line ${lineLooks[i]}`;

// Drawing. What is near is drawn topic by topic, what is seen from far as one path for each look.

const svg = element('map'), world = element('world'), lineLayer = element('lines'), shapeLayer = element('shapes');
const ring = element('ring');  // around the chosen topic
const view = { x: 0, y: 0, scale: 1, width: 1, height: 1 };
let map = null;         // as placed
let whole = null;       // with all unfolded, placed before it is asked for
let drawn = null;       // the part of the world that has been drawn
let isFar = false, nodes = new Map();  // the drawn topics' elements
let hits = new Set(), hitsBelow = new Int32Array(count);  // what the search has found

function svgElement(name, attributes, parent) {
  const made = document.createElementNS('http://www.w3.org/2000/svg', name);
  for (const key in attributes) made.setAttribute(key, attributes[key]);
  parent?.append(made);
  return made;
}

const nodeLook = i => hits.has(i) ? `topic ${looks[i]} hit` : `topic ${looks[i]}`;
const knobLook = i => hitsBelow[i] && isFolded[i] ? 'knob hit' : 'knob';

/** What folds and unfolds the branch: on the outer edge, or the count in the room beside the shape. */
function addKnob(i, node) {
  const outer = isLeft(map, i) ? 0 : topics[i].width, y = topics[i].height / 2;
  const group = svgElement('g', { class: knobLook(i) }, node);
  if (isFolded[i]) {
    const width = badgeWidth(i) - 2, x = outer === 0 ? -width - 2 : outer + 2;
    svgElement('rect', { x, y: y - 8, width, height: 16, rx: 8 }, group);
    svgElement('text', { x: x + width / 2, y: y + 4 }, group).textContent = `+${below(i)}`;
  } else {
    svgElement('circle', { cx: outer, cy: y, r: 5 }, group);
    svgElement('path', { d: `M${outer - 2.5} ${y}h5` }, group);
    svgElement('circle', { cx: outer, cy: y, r: 11, class: 'reach' }, group);
  }
}

function topicNode(i) {
  const { id, width, height, runs } = topics[i], { fontSize, isBold, radius } = styleOf(i);
  const node = svgElement('g', { 'data-id': id });
  const corners = i === 0 ? { rx: width / 2, ry: height / 2 } : { rx: Math.min(radius, height / 2) };
  svgElement('rect', { class: 'shape', width, height, ...corners }, node);
  for (const run of runs) {
    const look = run.role === 'title' ? 'title' : run.role === 'amount' || run.role === 'link' ? 'accent' : 'detail';
    const text = svgElement('text', { x: run.x, y: run.y, class: `${look} ${run.anchor ?? ''}` }, node);
    text.textContent = run.text;
    if (run.rtl) text.classList.add('rtl');
    if (look === 'title') Object.assign(text.style, { fontSize: `${fontSize}px`, fontWeight: isBold ? 'bold' : 'normal' });
    if (run.icon !== undefined)
      svgElement('use', { href: `#icon-${run.role}`, x: run.icon, y: run.y - 10, class: look }, node);
  }
  if (i > 0 && childCount[i] > 0) addKnob(i, node);
  return node;
}

function drawRing() {
  const width = topics[chosen].width + 8, height = topics[chosen].height + 8, corner = styleOf(chosen).radius + 4;
  const corners = chosen === 0 ? { rx: width / 2, ry: height / 2 } : { rx: corner, ry: corner };
  const place = { x: leftOf(map, chosen) - 4, y: topOf(map, chosen) - 4, width, height, ...corners };
  for (const key in place) ring.setAttribute(key, place[key]);
}

/** The part of the world in view, with a margin of `margin` times its width and height on each side. */
function visiblePart(margin) {
  const x = -view.x / view.scale, y = -view.y / view.scale, w = view.width / view.scale, h = view.height / view.scale;
  return { left: x - w * margin, top: y - h * margin, right: x + w * (1 + margin), bottom: y + h * (1 + margin) };
}
const isWithin = (a, b) => a.left >= b.left && a.top >= b.top && a.right <= b.right && a.bottom <= b.bottom;
const topicsIn = part => map.shown.filter((i, n) => {
  const x = map.places[n * 6], y = map.places[n * 6 + 1];
  return x < part.right && x + map.widths[n] > part.left && y < part.bottom && y + topics[i].height > part.top;
});

function drawNear(found) {
  const kept = new Map(), made = [], lines = [];
  for (const i of found) {
    const node = nodes.get(i) ?? topicNode(i);
    if (!nodes.delete(i)) made.push(node);
    node.setAttribute('class', nodeLook(i));
    node.setAttribute('transform', `translate(${leftOf(map, i)} ${topOf(map, i)})`);
    kept.set(i, node);
  }
  const foundSet = new Set(found);  // a line is drawn when one of its ends is
  for (const i of map.shown.toReversed())
    if (i > 0 && (foundSet.has(i) || foundSet.has(topics[i].parent)))
      lines.push(svgElement('path', { class: lineLook(i), d: lineTo(i), 'stroke-width': styleOf(i).lineWidth }));
  for (const node of nodes.values()) node.remove();
  nodes = kept;
  shapeLayer.append(...made);
  lineLayer.replaceChildren(...lines);
}

function drawFar() {
  const shapes = new Map(), lines = new Map();
  const add = (paths, look, path) => paths.has(look) ? paths.get(look).push(path) : paths.set(look, [path]);
  for (const i of map.shown) {
    const { width, height } = topics[i];
    add(shapes, `${nodeLook(i)} far`, `M${leftOf(map, i)} ${topOf(map, i)}h${width}v${height}h${-width}z`);
    if (i > 0) add(lines, lineLook(i), lineTo(i));
  }
  const joined = paths => Array.from(paths, ([look, parts]) =>
    svgElement('path', { class: look, d: parts.join(''), 'stroke-width': 2 }));
  lineLayer.replaceChildren(...joined(lines));
  shapeLayer.replaceChildren(...joined(shapes));
}

function clear() {
  shapeLayer.replaceChildren();
  nodes.clear();
}

/** Draws what is in view; `all` where the map has changed, not only the view. */
function draw(all) {
  world.setAttribute('transform', `translate(${view.x} ${view.y}) scale(${view.scale})`);
  const far = topicsIn(visiblePart(0)).length > (view.scale < SMALLEST_DRAWN ? 60 : MOST_DRAWN);
  if (!all && far === isFar && (far || isWithin(visiblePart(0), drawn))) return;
  if (far || isFar) clear();
  isFar = far;
  drawn = visiblePart(0.15);
  drawRing();
  if (far) drawFar();
  else drawNear(topicsIn(drawn));
}

/** The drawn topics move from where they stood; new topics come out of their nearest ancestor. */
function glide(before, shiftX, shiftY) {
  if (isFar || nodes.size > 600 || matchMedia('(prefers-reduced-motion: reduce)').matches) return;
  for (const [i, node] of nodes) {
    let from = i;
    while (!isShown(before, from)) from = topics[from].parent;
    const start = `translate(${leftOf(before, from) + shiftX}px, ${topOf(before, from) + shiftY}px)`;
    const stop = `translate(${leftOf(map, i)}px, ${topOf(map, i)}px)`;
    if (start !== stop) node.animate([{ transform: start }, { transform: stop }], { duration: GLIDE, easing: 'ease-out' });
  }
  lineLayer.animate([{ opacity: 0 }, { opacity: 0, offset: 0.5 }, { opacity: 1 }], { duration: GLIDE * 1.4 });
}

/** Lays the map out anew; `anchor` stays where it is on the screen. */
function layOut(anchor) {
  const before = map ?? { indexes: [] }, shown = shownTopics();
  map = shown.length === count ? whole ??= place(shown) : place(shown);
  for (const [i, node] of nodes) {
    const isSame = isShown(map, i) && isLeft(map, i) === isLeft(before, i) &&
      map.widths[map.indexes[i]] === before.widths[before.indexes[i]];
    if (!isSame && nodes.delete(i)) node.remove();  // its knob is another knob now
  }
  let shiftX = 0, shiftY = 0;
  if (isShown(before, anchor)) {
    shiftX = leftOf(map, anchor) - leftOf(before, anchor);
    shiftY = topOf(map, anchor) - topOf(before, anchor);
    view.x -= shiftX * view.scale;
    view.y -= shiftY * view.scale;
  }
  draw(true);
  if (isShown(before, 0)) glide(before, shiftX, shiftY);
  drawRows();
  remember();
}

// The view.

const fittingScale = ({ left, top, right, bottom }) =>
  Math.min((view.width - 32) / (right - left), (view.height - 32) / (bottom - top));

function lookFrom(x, y, scale) {
  Object.assign(view, { x, y, scale });
  draw(false);
}
const pan = (x, y) => lookFrom(view.x + x, view.y + y, view.scale);
const lookAt = (x, y, scale) => lookFrom(view.width / 2 - x * scale, view.height / 2 - y * scale, scale);
const fit = () => lookAt((map.left + map.right) / 2, (map.top + map.bottom) / 2, Math.min(fittingScale(map), 1.25));

function zoom(factor, x = view.width / 2, y = view.height / 2) {
  const scale = Math.max(Math.min(fittingScale(map), 0.25) / 2, Math.min(4, view.scale * factor));
  lookFrom(x - (x - view.x) * scale / view.scale, y - (y - view.y) * scale / view.scale, scale);
}

/** Moves the map until the chosen topic is in view and large enough to be read. */
function show() {
  const [x, y] = middleOf(chosen), { scale, width, height } = view;
  if (scale < READABLE) return lookAt(x, y, 1);
  const reach = (size, room) => Math.min(room / 2, size / 2 * scale + 24);
  const move = (at, half, room) => Math.max(0, half - at) - Math.max(0, at + half - room);
  pan(move(x * scale + view.x, reach(topics[chosen].width, width), width),
      move(y * scale + view.y, reach(topics[chosen].height, height), height));
}

/** The deepest level at which the whole map can be read. */
function openingLevel() {
  let best = 1;
  for (let atLevel = 1; atLevel <= deepest; ++atLevel) {
    foldAt(atLevel);
    const shown = shownTopics();
    if (shown.length > 1000 || fittingScale(place(shown)) < READABLE) break;
    best = atLevel;
  }
  return best;
}

/** Shows what the address says, otherwise the whole map where it can be read and its middle where it cannot. */
function open() {
  if (!readAddress()) foldAt(openingLevel());
  layOut(0);
  if (fittingScale(map) >= READABLE) fit();
  else lookAt(0, 0, READABLE);
  choose(chosen, false);
  if (chosen > 0) show();
}

// What the user does with topics.

function choose(i, withDetails) {
  chosen = i;
  drawRing();
  element('branch').disabled = childCount[i] === 0;
  const state = childCount[i] === 0 ? '' : `, ${below(i)} ${words.below}, ${isFolded[i] ? words.folded : words.unfolded}`;
  element('status').textContent = topics[i].text + state;
  if (withDetails || !element('details').hidden) showDetails();
  drawRows();
  remember();
}

function showDetails() {
  const topic = topics[chosen];
  element('text').textContent = topic.text;
  element('note').textContent = topic.note ?? '';
  const link = document.createElement(topic.target ? 'a' : 'span');
  link.textContent = topic.address ?? '';
  if (topic.target) Object.assign(link, { href: topic.target, target: '_blank', rel: 'noopener noreferrer' });
  const { dates, amount, sum, parameters } = topic;
  const facts = { dates, amount, sum, link: topic.address && link, parameters, topicsBelow: below(chosen) || '' };
  element('facts').replaceChildren();
  for (const name in facts) {
    if (!facts[name]) continue;
    const term = document.createElement('dt'), value = document.createElement('dd');
    term.textContent = words[name];
    value.dir = 'auto';
    value.append(facts[name]);
    element('facts').append(term, value);
  }
  element('details').hidden = false;
}

function toggle(i) {
  if (i === 0 || childCount[i] === 0) return;
  isFolded[i] ^= 1;
  if (isFolded[i] && chosen > i && chosen < end[i]) chosen = i;
  layOut(i);
  choose(chosen, false);
}

function unfoldBranch() {
  isFolded.fill(0, chosen, end[chosen]);
  layOut(chosen);
  choose(chosen, false);
}

function unfoldTo(atLevel) {
  foldAt(atLevel);
  while (level[chosen] > atLevel) chosen = topics[chosen].parent;
  layOut(chosen);
  choose(chosen, false);
  fit();
}

/** To the closest topic in a direction, what stands aside counting as further away. */
function goTo(dx, dy) {
  const [x, y] = middleOf(chosen);
  let best = chosen, bestDistance = Infinity;
  for (const i of map.shown) {
    const [otherX, otherY] = middleOf(i);
    const along = (otherX - x) * dx + (otherY - y) * dy, aside = Math.abs((otherX - x) * dy + (otherY - y) * dx);
    const distance = along + 2.5 * aside;
    if (along > 0 && distance < bestDistance) [best, bestDistance] = [i, distance];
  }
  choose(best, false);
  show();
}

// Search, without case and marks.

const plain = text => text.normalize('NFKD').replace(/\p{M}/gu, '').toLowerCase();
const searchText = t => plain([t.text, t.note, t.dates, t.amount, t.sum, t.address, t.parameters].join('\n'));
let searchTexts = null, found = [], current = -1;

function search() {
  searchTexts ??= topics.map(searchText);
  const query = plain(element('query').value.trim());
  found = query === '' ? [] : [...topics.keys()].filter(i => searchTexts[i].includes(query));
  current = -1;
  hits = new Set(found);
  hitsBelow.fill(0);
  for (let i = count - 1; i > 0; --i) hitsBelow[topics[i].parent] += hitsBelow[i] + (hits.has(i) ? 1 : 0);
  for (const [i, node] of nodes) {
    node.setAttribute('class', nodeLook(i));
    node.querySelector('.knob')?.setAttribute('class', knobLook(i));
  }
  if (isFar) draw(true);
  tellHits();
  drawRows();
}

function tellHits() {
  const place = current < 0 ? '' : `${current + 1} ${words.of} `;
  element('hits').textContent = element('query').value.trim() === '' ? '' : `${place}${found.length}`;
  element('next').disabled = element('previous').disabled = found.length === 0;
}

function goToHit(step) {
  if (found.length === 0) return;
  current = current < 0 && step < 0 ? found.length - 1 : (current + step + found.length) % found.length;
  unfoldAbove(found[current]);
  if (!isShown(map, found[current])) layOut(chosen);
  choose(found[current], true);
  show();
  tellHits();
}

// The outline: the same topics as rows, of which only those in sight are made.

const rows = element('rows');
const spacer = rows.appendChild(document.createElement('div'));

function row(n) {
  const i = map.shown[n];
  const made = document.createElement('div'), twisty = document.createElement('span');
  Object.assign(made, { id: `row-${i}`, className: hits.has(i) ? 'row hit' : 'row', dir: 'auto', role: 'treeitem' });
  Object.assign(made.style, { top: `${n * ROW}px`, paddingInlineStart: `${4 + 14 * Math.min(level[i], 12)}px` });
  const facts = { level: level[i] + 1, posinset: Math.max(1, position[i]), selected: i === chosen,
                  setsize: i === 0 ? 1 : childCount[topics[i].parent] };
  if (i > 0 && childCount[i] > 0) facts.expanded = !isFolded[i];
  for (const name in facts) made.setAttribute(`aria-${name}`, facts[name]);
  twisty.className = 'twisty';
  twisty.ariaHidden = 'true';
  twisty.textContent = facts.expanded === undefined ? '' : facts.expanded ? '\u25be' : '\u25b8';
  made.append(twisty, topics[i].text.replaceAll('\n', ' '));
  return made;
}

function drawRows() {
  spacer.style.height = `${map.shown.length * ROW}px`;
  const first = Math.max(0, Math.floor(rows.scrollTop / ROW) - 4);
  const last = Math.min(map.shown.length, first + Math.ceil(rows.clientHeight / ROW) + 8);
  const numbers = Array.from({ length: last - first }, (_, n) => first + n);
  const n = map.indexes[chosen];
  if (n >= 0 && (n < first || n >= last)) numbers.push(n);  // what the focus is on is always there
  spacer.replaceChildren(...numbers.map(row));
  rows.setAttribute('aria-activedescendant', `row-${chosen}`);
}

function chooseRow(n) {
  const at = Math.max(0, Math.min(map.shown.length - 1, n));
  choose(map.shown[at], false);
  show();
  rows.scrollTop = Math.max((at + 1) * ROW - rows.clientHeight, Math.min(at * ROW, rows.scrollTop));
  drawRows();
}
const chooseRowBeside = step => chooseRow(map.indexes[chosen] + step);

const outlineKeys = {
  ArrowDown: () => chooseRowBeside(1),
  ArrowUp: () => chooseRowBeside(-1),
  PageDown: () => chooseRowBeside(Math.floor(rows.clientHeight / ROW)),
  PageUp: () => chooseRowBeside(-Math.floor(rows.clientHeight / ROW)),
  Home: () => chooseRow(0),
  End: () => chooseRow(count),
  ArrowRight: () => isFolded[chosen] ? toggle(chosen) : childCount[chosen] > 0 && chooseRowBeside(1),
  ArrowLeft: () => childCount[chosen] > 0 && !isFolded[chosen] && chosen > 0 ? toggle(chosen)
    : chooseRow(chosen > 0 ? map.indexes[topics[chosen].parent] : 0),
};
rows.addEventListener('scroll', drawRows);
rows.addEventListener('click', event => {
  const made = event.target.closest('.row');
  if (made === null) return;
  const i = Number(made.id.slice('row-'.length));
  if (event.target.className === 'twisty') return toggle(i);
  choose(i, true);
  show();
});

// Keys and buttons.

function toggleOutline() {
  const isOpen = element('outline').classList.toggle('open');
  element('toggle-outline').ariaPressed = isOpen;
  (isOpen ? rows : svg).focus();
}

function close() {
  element('help').hidePopover();
  element('details').hidden = true;
  element('query').value = '';
  search();
  svg.focus();
}

const arrows = { ArrowLeft: [-1, 0], ArrowRight: [1, 0], ArrowUp: [0, -1], ArrowDown: [0, 1] };
const keys = {
  '+': () => zoom(1.25), '=': () => zoom(1.25), '-': () => zoom(0.8), '0': fit,
  'a': () => unfoldTo(deepest), 'b': unfoldBranch, 'n': () => goToHit(1), 'p': () => goToHit(-1),
  '/': () => element('query').select(), 'o': toggleOutline, '?': () => element('help').togglePopover(), 'Escape': close,
  ' ': () => toggle(chosen), 'Enter': () => choose(chosen, true),
};
for (let atLevel = 1; atLevel <= 9; ++atLevel) keys[atLevel] = () => unfoldTo(Math.min(atLevel, deepest));

document.addEventListener('keydown', event => {
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  const isQuery = event.target === element('query'), arrow = arrows[event.key];
  if (isQuery && event.key === 'Enter') goToHit(event.shiftKey ? -1 : 1);
  else if (isQuery && event.key !== 'Escape') return;
  else if (event.target === rows && Object.hasOwn(outlineKeys, event.key)) outlineKeys[event.key]();
  else if ((event.key === ' ' || event.key === 'Enter') && event.target.closest('button, a')) return;
  else if (event.shiftKey && arrow) pan(-80 * arrow[0], -80 * arrow[1]);
  else if (arrow) goTo(...arrow);
  else if (Object.hasOwn(keys, event.key)) keys[event.key]();
  else return;
  event.preventDefault();
});

const buttons = { previous: () => goToHit(-1), next: () => goToHit(1), branch: unfoldBranch, smaller: () => zoom(0.8),
                  larger: () => zoom(1.25), fit, all: keys.a, 'toggle-outline': toggleOutline, close };
for (const id in buttons) element(id).addEventListener('click', buttons[id]);
element('query').addEventListener('input', search);
for (let atLevel = 1; atLevel < Math.min(deepest, 10); ++atLevel) {
  const button = document.createElement('button');
  Object.assign(button, { textContent: atLevel, title: `${words.unfoldTo.replace('#', atLevel)} (${atLevel})`, onclick: keys[atLevel] });
  element('all').before(button);
}

// Mouse, pen and fingers.

const pointers = new Map();
let travelled = 0;

function pointOf(event) {
  const area = svg.getBoundingClientRect();
  return { x: event.clientX - area.left, y: event.clientY - area.top };
}

function click(event) {
  const point = pointOf(event), x = (point.x - view.x) / view.scale, y = (point.y - view.y) / view.scale;
  const target = document.elementFromPoint(event.clientX, event.clientY), knob = target?.closest('.knob');
  const at = isFar ? topicsIn({ left: x, right: x, top: y, bottom: y })[0]
    : [...nodes.keys()].find(i => nodes.get(i).contains(target));
  if (at === undefined) return;
  if (knob) toggle(at);
  else choose(at, true);
}

svg.addEventListener('pointerdown', event => {
  if (event.button !== 0) return;
  if (pointers.size === 0) travelled = 0;
  pointers.set(event.pointerId, pointOf(event));
  svg.setPointerCapture(event.pointerId);
});
svg.addEventListener('pointermove', event => {
  const from = pointers.get(event.pointerId), to = pointOf(event);
  if (from === undefined) return;
  travelled += Math.hypot(to.x - from.x, to.y - from.y);
  pointers.set(event.pointerId, to);
  if (travelled < 5) return;
  if (pointers.size === 1) return pan(to.x - from.x, to.y - from.y);
  const other = [...pointers].find(([id]) => id !== event.pointerId)[1];
  const distance = point => Math.max(1, Math.hypot(point.x - other.x, point.y - other.y));
  zoom(distance(to) / distance(from), other.x, other.y);
});
for (const name of ['pointerup', 'pointercancel'])
  svg.addEventListener(name, event => {
    if (pointers.delete(event.pointerId) && name === 'pointerup' && travelled < 5) click(event);
  });
svg.addEventListener('wheel', event => {
  const { x, y } = pointOf(event);
  zoom(Math.exp(-Math.max(-200, Math.min(200, event.deltaY)) / 400), x, y);
  event.preventDefault();
}, { passive: false });

// The sheet and the window.

addEventListener('beforeprint', () => {
  const { left, top, right, bottom } = map;
  svg.setAttribute('viewBox', `${left - 12} ${top - 12} ${right - left + 24} ${bottom - top + 24}`);
  world.setAttribute('transform', '');
  clear();
  drawNear(map.shown);
});
addEventListener('afterprint', () => {
  svg.removeAttribute('viewBox');
  clear();
  draw(true);
});

const measure = () => { [view.width, view.height] = [Math.max(1, svg.clientWidth), Math.max(1, svg.clientHeight)]; };
new ResizeObserver(() => {
  if (svg.hasAttribute('viewBox')) return;  // the sheet
  measure();
  draw(false);
  drawRows();
}).observe(svg);

const colors = new CSSStyleSheet();
colors.replaceSync(data.colors);
document.adoptedStyleSheets = [colors];

measure();
open();
tellHits();
addEventListener('hashchange', () => { if (location.hash !== address()) open(); });
setTimeout(() => {  // what the first use would wait for
  whole ??= place([...topics.keys()]);
  searchTexts ??= topics.map(searchText);
  document.documentElement.dataset.ready = 'yes';
}, 300);
