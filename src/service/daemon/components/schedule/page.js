// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Edits a schedule. The value is a JSON list of {start, end, title, speaker} with times as "HH:MM".
// Members that are not known here stay.

import {accept, connectFoot, make, say, whenLoaded} from '../component.js';

const byId = (id) => document.getElementById(id);
const table = byId('items');
const fields = ['start', 'end', 'title', 'speaker'];
const labels = {start: 'Start', end: 'End', title: 'Title', speaker: 'Speaker'};

const model = {
  incoming: '',
  changed: false,
  items: [],
  removed: [], // {item, index}, the latest last
};

function parse(text) {
  if (text.trim() === '')
    return [];
  try {
    const value = JSON.parse(text);
    const isItem = (one) => one !== null && typeof one === 'object' && !Array.isArray(one);
    if (!Array.isArray(value) || !value.every(isItem))
      return null;
    const word = (one) => typeof one === 'string' ? one : '';
    return value.map((one) => ({...one, ...Object.fromEntries(fields.map((name) => [name, word(one[name])]))}));
  } catch (e) {
    return null;
  }
}

const valueText = () => model.changed ? JSON.stringify(model.items) : model.incoming;

// Times ------------------------------------------------------------------------------------------

/** Minutes since midnight of "9:30", "14.05", "930", "9", "9:30 pm"; null for anything else. */
function minutesOf(text) {
  const match = /^(\d{1,2})(?:[:.h]?(\d{2}))?\s*([ap])?\.?(?:m\.?)?$/i.exec(text.trim());
  if (!match || (match[3] === undefined && /m/i.test(text)))
    return null;
  let hours = Number(match[1]);
  const minutes = Number(match[2] || 0);
  if (match[3]) {
    if (hours < 1 || hours > 12)
      return null;
    hours = hours % 12 + (match[3].toLowerCase() === 'p' ? 12 : 0);
  }
  const all = hours * 60 + minutes;
  return minutes < 60 && all <= 24 * 60 ? all : null;
}

const timeText = (minutes) => String(Math.floor(minutes / 60)).padStart(2, '0') + ':' +
                              String(minutes % 60).padStart(2, '0');

/** What is wrong with each item: {start, end} sentences, and whether it overlaps another. */
function problems() {
  const spans = model.items.map((item) => [minutesOf(item.start), minutesOf(item.end)]);
  return model.items.map((item, i) => {
    const [start, end] = spans[i];
    const found = {start: '', end: '', overlap: null};
    if (start === null)
      found.start = item.start.trim() === '' ? 'Missing' : 'No time';
    if (end === null)
      found.end = item.end.trim() === '' ? 'Missing' : 'No time';
    else if (start !== null && end <= start)
      found.end = 'Too early';
    if (found.start === '' && found.end === '') {
      found.overlap = spans.findIndex(([s, e], j) => j !== i && s !== null && e !== null && s < e &&
                                                     s < end && start < e);
      if (found.overlap < 0)
        found.overlap = null;
    }
    return found;
  });
}

// Showing ----------------------------------------------------------------------------------------

function makeRow(item) {
  const row = make('tr');
  row.item = item;
  for (const name of fields) {
    const isTime = name === 'start' || name === 'end';
    const input = make('input', {type: 'text', class: name + (isTime ? ' time' : ''), autocomplete: 'off',
                                 spellcheck: !isTime});
    input.value = item[name];
    input.addEventListener('input', () => {
      model.changed = true;
      item[name] = input.value;
      check();
    });
    if (isTime)
      input.addEventListener('change', () => tidyTime(item, name, input));
    row.append(make('td', {}, input, make('span', {class: 'note', hidden: true})));
  }
  const button = make('button', {type: 'button', class: 'icon remove', title: 'Remove'}, '×');
  button.addEventListener('click', () => remove(model.items.indexOf(item)));
  row.append(make('td', {}, button));
  return row;
}

/** What was typed in another form becomes "HH:MM"; what is no time stays for its author to mend. */
function tidyTime(item, name, input) {
  const minutes = minutesOf(input.value);
  if (minutes !== null)
    item[name] = input.value = timeText(minutes);
  check();
}

function showNote(row, name, sentence, index) {
  const input = row.querySelector('.' + name);
  const note = input.nextElementSibling;
  note.id = `note-${name}-${index}`;
  note.textContent = sentence;
  note.hidden = sentence === '';
  input.setAttribute('aria-invalid', sentence !== '');
  if (sentence === '')
    input.removeAttribute('aria-describedby');
  else
    input.setAttribute('aria-describedby', note.id);
}

/** Marks what is wrong; returns the first field that is. */
function check() {
  let first = null;
  let overlaps = 0;
  problems().forEach((found, index) => {
    const row = table.children[index];
    for (const name of ['start', 'end']) {
      showNote(row, name, found[name], index);
      if (found[name] !== '' && !first)
        first = row.querySelector('.' + name);
    }
    row.classList.toggle('overlap', found.overlap !== null);
    const note = row.querySelector('.title').nextElementSibling;
    note.hidden = found.overlap === null;
    note.textContent = found.overlap === null ? '' : `At the same time as line ${found.overlap + 1}`;
    overlaps += found.overlap === null ? 0 : 1;
  });
  const last = model.removed[model.removed.length - 1];
  byId('undo').hidden = !last;
  let message = last ? `Removed “${last.item.title.trim() || 'item'}”.` : '';
  if (!last && overlaps > 0)
    message = `${overlaps} items overlap.`;
  showMessage(message, false);
  return first;
}

function showMessage(text, isProblem) {
  byId('message').className = isProblem ? 'problem' : 'faint';
  if (byId('message').textContent !== text)
    byId('message').textContent = text;
}

function show() {
  const known = new Map([...table.children].map((row) => [row.item, row]));
  model.items.forEach((item, index) => {
    const row = known.get(item) || makeRow(item);
    known.delete(item);
    if (table.children[index] !== row)
      table.insertBefore(row, table.children[index] || null);
    for (const name of fields)
      row.querySelector('.' + name).setAttribute('aria-label', `${labels[name]}, line ${index + 1}`);
    row.querySelector('.remove').setAttribute('aria-label', `Remove line ${index + 1}`);
  });
  for (const row of known.values())
    row.remove();
  const count = model.items.length;
  byId('count').textContent = count === 1 ? '1 item' : `${count} items`;
  byId('empty').hidden = count > 0;
  table.parentElement.hidden = count === 0;
  byId('keys').hidden = count === 0;
  byId('sort').disabled = count < 2;
  check();
}

// Changing ---------------------------------------------------------------------------------------

function focusField(index, name) {
  const row = table.children[index];
  if (!row)
    return;
  const input = row.querySelector('.' + name);
  input.focus();
  if (input.select)
    input.select();
  row.scrollIntoView({block: 'nearest'});
}

/** A new line begins where the last one ends and is as long. */
function add() {
  const last = model.items[model.items.length - 1];
  const start = last ? minutesOf(last.end) : 9 * 60;
  const length = last && start !== null && minutesOf(last.start) !== null
      ? Math.max(5, start - minutesOf(last.start)) : 30;
  const item = {start: start === null ? '' : timeText(start), end: '', title: '', speaker: ''};
  if (start !== null)
    item.end = timeText(Math.min(24 * 60, start + length));
  model.changed = true;
  model.items.push(item);
  show();
  focusField(model.items.length - 1, 'title');
  say(`Line ${model.items.length} added.`);
}

function remove(index) {
  model.changed = true;
  const [item] = model.items.splice(index, 1);
  model.removed.push({item, index});
  show();
  const next = table.children[Math.min(index, model.items.length - 1)];
  (next ? next.querySelector('.remove') : byId('undo')).focus();
  say(`Line ${index + 1} removed. ${model.items.length} left. Undo is at the foot of the page.`);
}

function undo() {
  const {item, index} = model.removed.pop();
  const at = Math.min(index, model.items.length);
  model.items.splice(at, 0, item);
  show();
  focusField(at, 'title');
  say(`Line ${at + 1} is back.`);
}

/** By start, then end; lines without a time stay last, in their order. */
function sort() {
  const key = (item) => [minutesOf(item.start) ?? Infinity, minutesOf(item.end) ?? Infinity];
  const before = [...model.items];
  model.items.sort((a, b) => {
    const [x, y] = [key(a), key(b)];
    return x[0] === y[0] ? (x[1] === y[1] ? 0 : x[1] - y[1]) : x[0] - y[0];
  });
  const isSame = model.items.every((item, i) => item === before[i]);
  model.changed = model.changed || !isSame;
  show();
  say(isSame ? 'The schedule is in order already.' : 'The schedule is sorted by time.');
}

function moveByKey(event) {
  const row = event.target.closest('tr');
  if (!row)
    return;
  const index = [...table.children].indexOf(row);
  const name = fields.find((one) => event.target.classList.contains(one)) || 'start';
  if (event.key === 'Delete' && event.altKey)
    remove(index);
  else if (event.key === 'ArrowDown' && !event.altKey)
    focusField(index + 1, name);
  else if (event.key === 'ArrowUp' && !event.altKey)
    focusField(index - 1, name);
  else if (event.key === 'Enter' && !event.ctrlKey && event.target.tagName === 'INPUT')
    enter(index, name);
  else
    return;
  event.preventDefault();
}

function enter(index, name) {
  const input = table.children[index].querySelector('.' + name);
  input.dispatchEvent(new Event('change'));
  if (index + 1 < model.items.length)
    focusField(index + 1, name);
  else
    add();
}

// Beginning and end ------------------------------------------------------------------------------

function finish() {
  if (!model.changed)
    return accept(valueText());
  for (const item of model.items) {
    for (const name of ['start', 'end'])
      item[name] = minutesOf(item[name]) === null ? item[name] : timeText(minutesOf(item[name]));
  }
  const first = check();
  if (!first)
    return accept(valueText());
  const count = table.querySelectorAll('[aria-invalid="true"]').length;
  showMessage(count === 1 ? 'One time needs your attention.' : `${count} times need your attention.`, true);
  first.focus();
  first.closest('tr').scrollIntoView({block: 'nearest'});
}

function load(text) {
  const items = parse(text);
  Object.assign(model, {incoming: text, changed: false, items: items || [], removed: []});
  byId('notice').hidden = items !== null;
  byId('notice').textContent = 'The present value is no schedule, and is kept unless you add something: ' +
                               (text.length > 200 ? text.slice(0, 200) + '…' : text);
  show();
}

byId('add').addEventListener('click', add);
byId('sort').addEventListener('click', sort);
byId('undo').addEventListener('click', undo);
table.addEventListener('keydown', moveByKey);
connectFoot(finish);
load('');
whenLoaded(load);
