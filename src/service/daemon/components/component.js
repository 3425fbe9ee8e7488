// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What all component pages share: taking the value in, giving the result back, speaking to screen
// readers. The page itself is used by a dialog that calls external_load(value) after loading, reads
// window.returnValue when the page closes, and takes a page without one for cancelled.

/** Calls `show` with the value that is to be edited. */
export function whenLoaded(show) {
  window.external_load = (value) => show(typeof value === 'string' ? value : '');
}

/** Ends the page with a value and, if given, what it depends on ("guid,guid"). */
export function accept(value, dependencies) {
  window.returnValue = dependencies === undefined ? value : [[value], ['', dependencies]];
  window.close();
}

/** Ends the page without a result: the value stays as it was. */
export function cancel() {
  delete window.returnValue;
  window.close();
}

/** Asks for a picture; `take(value, guid)` is called when one has been chosen. */
export function pickAsset(take) {
  window.doSelectAssetCallback = (value, guid) => take(String(value), String(guid));
  window.childWindowType = 0;
  window.open();
}

/** Says a sentence to screen readers, and again when it is the same one. */
export function say(sentence) {
  const region = document.getElementById('spoken');
  region.textContent = region.textContent === sentence ? sentence + '\u00a0' : sentence;
}

/** Makes an element: `make('button', {class: 'icon', 'aria-label': 'Remove'}, '×')`. */
export function make(name, attributes = {}, ...children) {
  const element = document.createElement(name);
  for (const [key, value] of Object.entries(attributes)) {
    if (value === true)
      element.setAttribute(key, '');
    else if (value !== false && value !== null && value !== undefined)
      element.setAttribute(key, value);
  }
  element.append(...children);
  return element;
}

/** Connects the buttons at the foot and their keys: Escape cancels, Ctrl+Enter accepts. */
export function connectFoot(onAccept) {
  document.getElementById('cancel').addEventListener('click', cancel);
  document.getElementById('ok').addEventListener('click', onAccept);
  document.addEventListener('keydown', (event) => {
    if (event.defaultPrevented)
      return;
    if (event.key === 'Escape')
      cancel();
    else if (event.key === 'Enter' && event.ctrlKey)
      onAccept();
  });
}

// The dialog names the style sheet that goes with it. Another one than ours lies beside ours.
const sheet = new URLSearchParams(location.search).get('stylesheet');
if (sheet !== null && /^[a-z0-9-]+\.css$/.test(sheet)) {
  const link = document.querySelector('link[data-studio]');
  if (link && link.getAttribute('href') !== '../' + sheet)
    link.setAttribute('href', '../' + sheet);
}

// The page fills whatever room the window gives it. A dialog that is told of a new size would take on
// the page's and no longer follow its window, so it is not told.
Object.defineProperty(window, 'onresize', {configurable: true, get: () => null, set: () => {}});

// What the dialog says of the program goes before what the engine says of the desktop.
const scheme = getComputedStyle(document.documentElement).getPropertyValue('--studio-color-scheme').trim();
document.documentElement.classList.toggle('dark',
    scheme ? scheme === 'dark' : matchMedia('(prefers-color-scheme: dark)').matches);
