// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Arranges slides. The value is a JSON list of {title, picture, guid}, where the picture is the value
// of an asset (its address) and the guid the asset. Members that are not known here stay.

import {accept, connectFoot, make, pickAsset, say, whenLoaded} from '../component.js';

const byId = (id) => document.getElementById(id);
const list = byId('slides');

const model = {
  incoming: '',
  changed: false,
  slides: [], // {title, picture, guid, ...}
  removed: [], // {slide, index}, the latest last
};

const nameOf = (slide, index) => slide.title.trim() || `Slide ${index + 1}`;

function parse(text) {
  if (text.trim() === '')
    return [];
  try {
    const value = JSON.parse(text);
    const isSlide = (one) => one !== null && typeof one === 'object' && !Array.isArray(one);
    if (!Array.isArray(value) || !value.every(isSlide))
      return null;
    const word = (one) => typeof one === 'string' ? one : '';
    return value.map((one) => ({...one, title: word(one.title), picture: word(one.picture), guid: word(one.guid)}));
  } catch (e) {
    return null;
  }
}

const valueText = () => model.changed ? JSON.stringify(model.slides) : model.incoming;

/** Each picture once, in the order of the slides. */
function dependencies() {
  return [...new Set(model.slides.map((slide) => slide.guid).filter((guid) => guid !== ''))].join(',');
}

// Showing ----------------------------------------------------------------------------------------

/** Only addresses of the service: relative ones, or whole ones that lie there. */
function pictureOf(slide) {
  try {
    const address = new URL(slide.picture, location.origin + '/');
    return slide.picture !== '' && address.origin === location.origin ? address.href : null;
  } catch (e) {
    return null;
  }
}

function showThumbnail(button, slide, index) {
  const address = pictureOf(slide);
  button.setAttribute('aria-label', `${address ? 'Change' : 'Choose'} the picture of ${nameOf(slide, index)}`);
  button.title = address ? 'Change the picture' : 'Choose a picture';
  if (button.dataset.shown === slide.picture)
    return;
  button.dataset.shown = slide.picture;
  if (!address) {
    button.replaceChildren(slide.picture === '' ? 'No picture' : 'Not shown');
    return;
  }
  const image = make('img', {alt: '', draggable: 'false'});
  image.addEventListener('error', () => button.replaceChildren('Cannot be shown'));
  image.src = address;
  button.replaceChildren(image);
}

function makeRow(slide) {
  const row = make('li', {class: 'slide'});
  row.slide = slide;
  const at = () => model.slides.indexOf(slide);
  const thumbnail = make('button', {type: 'button', class: 'thumbnail'});
  thumbnail.addEventListener('click', () => changePicture(slide));
  const title = make('input', {type: 'text', class: 'title', placeholder: 'Title', spellcheck: 'true'});
  title.value = slide.title;
  title.addEventListener('input', () => {
    model.changed = true;
    slide.title = title.value;
    show();
  });
  const tool = (name, sign, act) => {
    const button = make('button', {type: 'button', class: 'icon ' + name}, sign);
    button.addEventListener('click', act);
    return button;
  };
  row.append(make('span', {class: 'handle', 'aria-hidden': 'true', title: 'Drag to arrange'}, '⠿'),
             make('span', {class: 'number'}), thumbnail, title,
             make('span', {class: 'tools'},
                  tool('up', '↑', (event) => move(at(), at() - 1, event.currentTarget)),
                  tool('down', '↓', (event) => move(at(), at() + 1, event.currentTarget)),
                  tool('remove', '×', () => remove(at()))));
  row.addEventListener('keydown', (event) => {
    if (!event.altKey || (event.key !== 'ArrowUp' && event.key !== 'ArrowDown'))
      return;
    event.preventDefault();
    move(at(), at() + (event.key === 'ArrowUp' ? -1 : 1), document.activeElement);
  });
  return row;
}

function showRow(row, index) {
  const slide = row.slide;
  const name = nameOf(slide, index);
  row.querySelector('.number').textContent = index + 1;
  row.querySelector('.title').setAttribute('aria-label', `Title of slide ${index + 1}`);
  const up = row.querySelector('.up');
  const down = row.querySelector('.down');
  // Not disabled: that would take the keyboard away from whoever has just moved a slide to the end.
  up.setAttribute('aria-disabled', index === 0);
  down.setAttribute('aria-disabled', index === model.slides.length - 1);
  for (const [button, words] of [[up, 'Move up'], [down, 'Move down'], [row.querySelector('.remove'), 'Remove']]) {
    button.title = words;
    button.setAttribute('aria-label', `${words}: ${name}`);
  }
  showThumbnail(row.querySelector('.thumbnail'), slide, index);
}

function show() {
  const known = new Map([...list.children].map((row) => [row.slide, row]));
  model.slides.forEach((slide, index) => {
    const row = known.get(slide) || makeRow(slide);
    known.delete(slide);
    if (list.children[index] !== row)
      list.insertBefore(row, list.children[index] || null);
    showRow(row, index);
  });
  for (const row of known.values())
    row.remove();
  const count = model.slides.length;
  byId('count').textContent = count === 1 ? '1 slide' : `${count} slides`;
  byId('empty').hidden = count > 0;
  byId('keys').hidden = count < 2;
  const last = model.removed[model.removed.length - 1];
  byId('undo').hidden = !last;
  byId('removed').textContent = last ? `Removed “${nameOf(last.slide, last.index)}”.` : '';
}

// Changing ---------------------------------------------------------------------------------------

function move(from, to, focused = null) {
  const count = model.slides.length;
  if (to < 0 || to >= count) {
    say(to < 0 ? 'This is the first slide already.' : 'This is the last slide already.');
    return;
  }
  model.changed = true;
  const [slide] = model.slides.splice(from, 1);
  model.slides.splice(to, 0, slide);
  show();
  if (focused) {
    focused.focus();
    list.children[to].scrollIntoView({block: 'nearest'});
  }
  say(`${nameOf(slide, to)} is now slide ${to + 1} of ${count}.`);
}

function insert(slide, index) {
  model.changed = true;
  model.slides.splice(index, 0, slide);
  show();
  list.children[index].querySelector('.title').focus();
  list.children[index].scrollIntoView({block: 'nearest'});
}

function remove(index) {
  model.changed = true;
  const [slide] = model.slides.splice(index, 1);
  model.removed.push({slide, index});
  show();
  const next = list.children[Math.min(index, model.slides.length - 1)];
  (next ? next.querySelector('.remove') : byId('undo')).focus();
  say(`${nameOf(slide, index)} removed. ${model.slides.length} left. Undo is at the foot of the page.`);
}

function undo() {
  const {slide, index} = model.removed.pop();
  insert(slide, Math.min(index, model.slides.length));
  say(`${nameOf(slide, index)} is back.`);
}

/** "Autumn walk" of ".../Autumn%20walk.png?s=..." */
function titleFrom(value) {
  const name = value.split(/[?#]/)[0].split('/').pop().replace(/\.[^.]*$/, '');
  try {
    return decodeURIComponent(name).replace(/[_-]+/g, ' ').trim();
  } catch (e) {
    return '';
  }
}

function addPicture() {
  pickAsset((value, guid) => {
    insert({title: titleFrom(value), picture: value, guid}, model.slides.length);
    say(`Picture added as slide ${model.slides.length}.`);
  });
}

function changePicture(slide) {
  pickAsset((value, guid) => {
    if (!model.slides.includes(slide))
      return;
    model.changed = true;
    slide.picture = value;
    slide.guid = guid;
    show();
    say('Picture changed.');
  });
}

// Dragging: with the pointer alone, so that it works by touch and in every window ---------------------

/** Moves the dragged row with the pointer, and past its neighbours when it is over their middle. */
function follow(drag, clientY) {
  const {row} = drag;
  const wanted = drag.top + clientY - drag.y + list.parentElement.scrollTop - drag.scroll;
  const rows = [...list.children];
  const index = rows.indexOf(row);
  const isUp = wanted < row.offsetTop;
  const other = rows[index + (isUp ? -1 : 1)];
  if (other) {
    const middle = other.offsetTop + other.offsetHeight / 2;
    if (isUp ? wanted < middle : wanted + row.offsetHeight > middle)
      move(index, index + (isUp ? -1 : 1));
  }
  row.style.transform = `translateY(${wanted - row.offsetTop}px)`;
}

function connectDragging() {
  const view = list.parentElement;
  let drag = null;
  list.addEventListener('pointerdown', (event) => {
    const handle = event.target.closest('.handle');
    if (!handle || event.button !== 0)
      return;
    event.preventDefault();
    const row = handle.closest('.slide');
    drag = {row, y: event.clientY, top: row.offsetTop, scroll: view.scrollTop, id: event.pointerId};
    row.classList.add('dragged');
    // Not by the row: it moves within the document while it is dragged, which would end its capture.
    list.setPointerCapture(event.pointerId);
  });
  list.addEventListener('pointermove', (event) => {
    if (!drag || event.pointerId !== drag.id)
      return;
    const box = view.getBoundingClientRect();
    const edge = 28;
    if (event.clientY < box.top + edge)
      view.scrollTop -= 12;
    else if (event.clientY > box.bottom - edge)
      view.scrollTop += 12;
    follow(drag, event.clientY);
  });
  for (const type of ['pointerup', 'pointercancel']) {
    list.addEventListener(type, () => {
      if (!drag)
        return;
      drag.row.classList.remove('dragged');
      drag.row.style.transform = '';
      drag = null;
    });
  }
}

// Beginning and end ------------------------------------------------------------------------------

function load(text) {
  const slides = parse(text);
  Object.assign(model, {incoming: text, changed: false, slides: slides || [], removed: []});
  byId('notice').hidden = slides !== null;
  byId('notice').textContent = 'The present value is no list of slides, and is kept unless you add some: ' +
                               (text.length > 200 ? text.slice(0, 200) + '…' : text);
  show();
}

byId('add-picture').addEventListener('click', addPicture);
byId('add-blank').addEventListener('click', () => {
  insert({title: '', picture: '', guid: ''}, model.slides.length);
  say(`Slide ${model.slides.length} added.`);
});
byId('undo').addEventListener('click', undo);
connectDragging();
connectFoot(() => {
  if (model.changed || parse(model.incoming) !== null)
    accept(valueText(), dependencies());
  else
    accept(valueText());
});
load('');
whenLoaded(load);
