// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Chooses a colour or a linear gradient. The value is CSS: "#rrggbb", "rgba(...)" or
// "linear-gradient(90deg, #rrggbb 0%, #rrggbb 100%)".

import {accept, connectFoot, make, say, whenLoaded} from '../component.js';
import {clamp, colourAt, contrast, fromRgb, gradientText, parseColour, parseValue, round, toHex, toRgb,
        toText} from './colours.js';

const byId = (id) => document.getElementById(id);
const area = byId('area');

const swatchTexts = [
  '#000000', '#3a3d44', '#7a7e88', '#b9bcc4', '#e4e5e9', '#ffffff',
  '#7f1d1d', '#c62828', '#e4572e', '#f29e4c', '#f1c453', '#fff3c4',
  '#1b4332', '#2d6a4f', '#52b788', '#b7e4c7', '#0b4f6c', '#01baef',
  '#1d3557', '#1b5fb4', '#8ecae6', '#3c096c', '#7b2cbf', '#e0aaff',
];

const model = {
  incoming: '',
  changed: false,
  kind: 'colour',
  colour: fromRgb([27, 95, 180]),
  angle: 90,
  stops: [],
  current: 0, // the stop that is edited
};

/** The colour that the controls below show and change. */
function edited() {
  return model.kind === 'gradient' ? model.stops[model.current].colour : model.colour;
}

/** What goes back: the text that came, unless somebody changed something. */
function valueText() {
  if (!model.changed)
    return model.incoming;
  return model.kind === 'gradient' ? gradientText(model.angle, model.stops) : toText(model.colour);
}

function changeColour(parts) {
  model.changed = true;
  Object.assign(edited(), parts);
  show();
}

// Showing ----------------------------------------------------------------------------------------

function showResult() {
  const text = valueText();
  byId('result').textContent = text === '' ? 'No value' : text;
  const isKnown = model.changed || parseValue(text) !== null;
  byId('sample').style.background = isKnown ? text : 'none';
  byId('sample').setAttribute('aria-label', text === '' ? 'No value' : 'Result: ' + text);
}

function showEditor() {
  const colour = edited();
  const opaque = toHex(colour);
  area.style.background = 'linear-gradient(0deg, #000, transparent), ' +
                          `linear-gradient(90deg, #fff, hsl(${round(colour.h, 1)}, 100%, 50%))`;
  byId('area-dot').style.left = colour.s * 100 + '%';
  byId('area-dot').style.top = (1 - colour.v) * 100 + '%';
  const saturation = Math.round(colour.s * 100);
  const brightness = Math.round(colour.v * 100);
  area.setAttribute('aria-valuenow', saturation);
  area.setAttribute('aria-valuetext', `Saturation ${saturation} %, brightness ${brightness} %`);
  byId('hue').value = Math.min(359, Math.round(colour.h));
  byId('hue-text').textContent = Math.round(colour.h) + '°';
  byId('alpha').value = Math.round(colour.a * 100);
  byId('alpha').style.setProperty('--opaque', opaque);
  byId('alpha-text').textContent = Math.round(colour.a * 100) + ' %';
  if (document.activeElement !== byId('hex')) {
    byId('hex').value = toText(colour);
    showHexProblem('');
  }
  for (const swatch of byId('swatches').children)
    swatch.setAttribute('aria-selected', colour.a >= 1 && swatch.title === opaque);
  showContrast(colour, opaque);
}

function showContrast(colour, opaque) {
  const lines = [['White', '#ffffff', [255, 255, 255]], ['Black', '#000000', [0, 0, 0]]];
  byId('contrast').replaceChildren(...lines.map(([name, text, rgb]) => {
    // What shows through is not known; a page behind it is mostly white.
    const shown = toRgb(colour).map((part) => Math.round(part * colour.a + 255 * (1 - colour.a)));
    const ratio = contrast(shown, rgb);
    const verdict = ratio >= 7 ? 'very good' : ratio >= 4.5 ? 'good' : ratio >= 3 ? 'large text only' : 'too faint';
    const sample = make('div', {class: 'shown'}, name + ' text');
    sample.style.background = `linear-gradient(${toText(colour)}, ${toText(colour)}), #ffffff`;
    sample.style.color = text;
    return make('div', {}, sample, make('div', {class: 'verdict'}, `${round(ratio, 1)} : 1, ${verdict}`));
  }));
}

function showGradient() {
  const isGradient = model.kind === 'gradient';
  byId('gradient').hidden = !isGradient;
  byId('kind-' + model.kind).checked = true;
  if (!isGradient)
    return;
  byId('track').style.background = gradientText(90, model.stops);
  const shown = byId('stops').children;
  while (shown.length > model.stops.length)
    byId('stops').lastChild.remove();
  while (shown.length < model.stops.length)
    byId('stops').append(make('button', {type: 'button'}));
  model.stops.forEach((stop, i) => {
    const handle = shown[i];
    handle.style.left = stop.at + '%';
    handle.style.background = toHex(stop.colour);
    handle.setAttribute('aria-pressed', i === model.current);
    handle.tabIndex = i === model.current ? 0 : -1;
    handle.setAttribute('aria-label',
                        `Stop ${i + 1} of ${model.stops.length}, ${toText(stop.colour)} at ${round(stop.at, 1)} %`);
  });
  for (const [id, value] of [['position', round(model.stops[model.current].at, 1)], ['angle', round(model.angle, 1)]]) {
    if (document.activeElement !== byId(id))
      byId(id).value = value;
  }
  byId('remove-stop').disabled = model.stops.length <= 2;
  byId('add-stop').disabled = model.stops.length >= 12;
}

function show() {
  showGradient();
  showEditor();
  showResult();
}

function showHexProblem(sentence) {
  byId('hex').setAttribute('aria-invalid', sentence !== '');
  byId('hex-problem').textContent = sentence;
}

// Colour -----------------------------------------------------------------------------------------

function connectArea() {
  const follow = (event) => {
    const box = area.getBoundingClientRect();
    changeColour({s: clamp((event.clientX - box.left) / box.width, 0, 1),
                  v: 1 - clamp((event.clientY - box.top) / box.height, 0, 1)});
  };
  area.addEventListener('pointerdown', (event) => {
    area.setPointerCapture(event.pointerId);
    follow(event);
  });
  area.addEventListener('pointermove', (event) => {
    if (area.hasPointerCapture(event.pointerId))
      follow(event);
  });
  area.addEventListener('keydown', (event) => {
    const step = event.shiftKey ? 0.1 : 0.01;
    const moves = {ArrowLeft: [-step, 0], ArrowRight: [step, 0], ArrowUp: [0, step], ArrowDown: [0, -step]};
    if (!(event.key in moves))
      return;
    event.preventDefault();
    const [s, v] = moves[event.key];
    const colour = edited();
    changeColour({s: clamp(round(colour.s + s, 4), 0, 1), v: clamp(round(colour.v + v, 4), 0, 1)});
  });
}

function connectControls() {
  byId('hue').addEventListener('input', () => changeColour({h: Number(byId('hue').value)}));
  byId('alpha').addEventListener('input', () => changeColour({a: Number(byId('alpha').value) / 100}));
  const hex = byId('hex');
  hex.addEventListener('input', () => {
    const text = /^[0-9a-f]{3}([0-9a-f]{3})?$/i.test(hex.value.trim()) ? '#' + hex.value.trim() : hex.value;
    const colour = parseColour(text, edited());
    showHexProblem(colour ? '' : 'Write a colour as #rrggbb, rgb(), hsl() or by its name.');
    if (colour)
      changeColour(colour);
  });
  hex.addEventListener('blur', show);
  connectSwatches();
}

function connectSwatches() {
  const box = byId('swatches');
  box.append(...swatchTexts.map((text, i) => {
    const swatch = make('div', {role: 'option', title: text, 'aria-label': text, tabindex: i === 0 ? 0 : -1});
    swatch.style.background = text;
    return swatch;
  }));
  const choose = (swatch) => {
    for (const one of box.children)
      one.tabIndex = one === swatch ? 0 : -1;
    swatch.focus();
    changeColour(parseColour(swatch.title, edited()));
  };
  box.addEventListener('click', (event) => {
    if (event.target !== box)
      choose(event.target);
  });
  box.addEventListener('keydown', (event) => {
    const at = [...box.children].indexOf(document.activeElement);
    const columns = getComputedStyle(box).gridTemplateColumns.split(' ').length;
    const moves = {ArrowLeft: -1, ArrowRight: 1, ArrowUp: -columns, ArrowDown: columns};
    if (event.key in moves) {
      const next = box.children[at + moves[event.key]];
      if (next)
        choose(next);
    } else if (event.key === ' ' || (event.key === 'Enter' && !event.ctrlKey)) {
      choose(box.children[at]);
    } else {
      return;
    }
    event.preventDefault();
  });
}

// Gradient ---------------------------------------------------------------------------------------

/** Brings the stops into order again and keeps the edited one edited. */
function sortStops() {
  const stop = model.stops[model.current];
  model.stops.sort((a, b) => a.at - b.at);
  model.current = model.stops.indexOf(stop);
}

function moveStop(at) {
  model.changed = true;
  model.stops[model.current].at = clamp(round(at, 1), 0, 100);
  sortStops();
  show();
}

function selectStop(index, focused = false) {
  model.current = clamp(index, 0, model.stops.length - 1);
  show();
  if (focused)
    byId('stops').children[model.current].focus();
}

function addStop(at) {
  if (model.stops.length >= 12)
    return;
  model.changed = true;
  model.stops.push({colour: colourAt(model.stops, at), at});
  model.current = model.stops.length - 1;
  sortStops();
  selectStop(model.current, true);
  say(`Stop added at ${round(at, 1)} percent. ${model.stops.length} stops.`);
}

function removeStop() {
  if (model.stops.length <= 2)
    return say('A gradient needs two stops.');
  model.changed = true;
  model.stops.splice(model.current, 1);
  selectStop(Math.min(model.current, model.stops.length - 1), true);
  say(`Stop removed. ${model.stops.length} stops.`);
}

/** The middle of the widest gap at the edited stop. */
function nextPlace() {
  const at = model.stops[model.current].at;
  const before = model.current > 0 ? model.stops[model.current - 1].at : at;
  const after = model.current + 1 < model.stops.length ? model.stops[model.current + 1].at : at;
  return round(after - at >= at - before ? (at + after) / 2 : (at + before) / 2, 1);
}

function connectStops() {
  const stops = byId('stops');
  const placeOf = (event) => {
    const box = byId('track').getBoundingClientRect();
    return clamp((event.clientX - box.left) / box.width, 0, 1) * 100;
  };
  let dragged = null; // where on the handle it was taken
  stops.addEventListener('pointerdown', (event) => {
    const index = [...stops.children].indexOf(event.target);
    if (index < 0)
      return;
    dragged = placeOf(event) - model.stops[index].at;
    selectStop(index, true);
    stops.setPointerCapture(event.pointerId);
    event.preventDefault();
  });
  stops.addEventListener('pointermove', (event) => {
    if (dragged === null)
      return;
    moveStop(placeOf(event) - dragged);
    stops.children[model.current].focus();
  });
  for (const type of ['pointerup', 'pointercancel'])
    stops.addEventListener(type, () => { dragged = null; });
  byId('track').addEventListener('click', (event) => addStop(placeOf(event)));
  stops.addEventListener('keydown', (event) => {
    const at = model.stops[model.current].at;
    const step = event.shiftKey ? 10 : 1;
    const places = {ArrowLeft: at - step, ArrowDown: at - step, ArrowRight: at + step, ArrowUp: at + step,
                    Home: 0, End: 100};
    if (event.key === 'Delete') {
      removeStop();
    } else if (event.key === 'PageUp' || event.key === 'PageDown') {
      selectStop(model.current + (event.key === 'PageUp' ? -1 : 1), true);
    } else if (event.key in places) {
      moveStop(places[event.key]);
      stops.children[model.current].focus();
    } else {
      return;
    }
    event.preventDefault();
  });
}

function connectGradient() {
  connectStops();
  const number = (id, take) => {
    byId(id).addEventListener('input', () => {
      const value = byId(id).valueAsNumber;
      if (Number.isFinite(value))
        take(value);
    });
    byId(id).addEventListener('blur', show);
  };
  number('position', moveStop);
  number('angle', (value) => {
    model.changed = true;
    model.angle = ((value % 360) + 360) % 360;
    show();
  });
  byId('add-stop').addEventListener('click', () => addStop(nextPlace()));
  byId('remove-stop').addEventListener('click', removeStop);
}

/** A colour becomes a gradient to something near it, a gradient its edited stop. */
function changeKind(kind) {
  if (kind === model.kind)
    return;
  if (kind === 'gradient' && model.stops.length === 0) {
    const {h, s, v, a} = model.colour;
    const darker = v > 0.4 ? v * 0.45 : Math.min(1, v + 0.5);
    model.stops = [{colour: {h, s, v, a}, at: 0}, {colour: {h, s, v: darker, a}, at: 100}];
    model.current = 0;
  } else if (kind === 'colour') {
    model.colour = {...edited()};
  }
  model.kind = kind;
  model.changed = true;
  show();
}

// Beginning and end ------------------------------------------------------------------------------

function load(text) {
  const value = parseValue(text);
  Object.assign(model, {incoming: text, changed: false, kind: 'colour', stops: [], current: 0, angle: 90});
  if (value && value.kind === 'gradient')
    Object.assign(model, {kind: 'gradient', angle: value.angle, stops: value.stops});
  else if (value)
    model.colour = value.colour;
  byId('notice').hidden = value !== null || text === '';
  byId('notice').textContent = 'This page cannot edit the present value, and keeps it unless you choose ' +
                               'something else: ' + (text.length > 200 ? text.slice(0, 200) + '…' : text);
  show();
}

for (const radio of document.querySelectorAll('input[name="kind"]'))
  radio.addEventListener('change', () => changeKind(radio.value));
connectArea();
connectControls();
connectGradient();
connectFoot(() => accept(valueText()));
load('');
whenLoaded(load);
