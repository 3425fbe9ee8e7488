// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Colours and gradients as CSS texts. A colour is {h, s, v, a}: hue 0 to 360, the others 0 to 1; so
// hue and saturation survive when something is made black or grey for a moment.

const clamp = (number, low, high) => Math.min(high, Math.max(low, number));
const round = (number, places) => Number(number.toFixed(places));

export function toRgb({h, s, v}) {
  const part = (n) => {
    const k = (n + h / 60) % 6;
    return Math.round(255 * (v - v * s * Math.max(0, Math.min(k, 4 - k, 1))));
  };
  return [part(5), part(3), part(1)];
}

export function fromRgb([r, g, b], a = 1, before = null) {
  const max = Math.max(r, g, b);
  const span = max - Math.min(r, g, b);
  let h = before ? before.h : 0;
  if (span > 0) {
    if (max === r)
      h = ((g - b) / span) % 6;
    else
      h = max === g ? (b - r) / span + 2 : (r - g) / span + 4;
    h = (h * 60 + 360) % 360;
  }
  const s = max > 0 ? span / max : (before ? before.s : 0);
  return {h, s, v: max / 255, a};
}

/** "#rrggbb" of a colour, whatever its opacity. */
export function toHex(colour) {
  return '#' + toRgb(colour).map((one) => one.toString(16).padStart(2, '0')).join('');
}

/** "#rrggbb", or "rgba(r, g, b, a)" for one that shows through. */
export function toText(colour) {
  if (colour.a >= 1)
    return toHex(colour);
  return `rgba(${toRgb(colour).join(', ')}, ${round(colour.a, 2)})`;
}

/** The colour a text names; null for a text that names none, or one that depends on where it stands. */
export function parseColour(text, before = null) {
  const word = text.trim();
  if (!/^[#a-z0-9(),.%\s/+-]+$/i.test(word) || !CSS.supports('color', word))
    return null;
  if (/^(currentcolor|inherit|initial|unset|revert|revert-layer)$/i.test(word))
    return null;
  const probe = document.createElement('canvas').getContext('2d');
  probe.fillStyle = '#010203';
  probe.fillStyle = word;
  const first = probe.fillStyle;
  probe.fillStyle = '#fefdfc';
  probe.fillStyle = word;
  if (probe.fillStyle !== first)
    return null; // a colour of the system, which is no fixed one
  if (first.startsWith('#')) {
    const parts = [1, 3, 5].map((at) => parseInt(first.slice(at, at + 2), 16));
    return fromRgb(parts, 1, before);
  }
  const parts = first.match(/[\d.]+/g).map(Number);
  return fromRgb(parts.slice(0, 3), parts[3], before);
}

/** What is between commas that do not stand in brackets. */
function splitAtCommas(text) {
  const parts = [''];
  let depth = 0;
  for (const c of text) {
    depth += c === '(' ? 1 : c === ')' ? -1 : 0;
    if (c === ',' && depth === 0)
      parts.push('');
    else
      parts[parts.length - 1] += c;
  }
  return parts.map((part) => part.trim());
}

function parseAngle(text) {
  const words = {'to top': 0, 'to right': 90, 'to bottom': 180, 'to left': 270};
  const word = text.toLowerCase().replace(/\s+/g, ' ');
  if (word in words)
    return words[word];
  const match = /^(-?\d+(?:\.\d+)?)(deg|turn)$/.exec(word);
  if (!match)
    return null;
  const degrees = Number(match[1]) * (match[2] === 'turn' ? 360 : 1);
  return ((degrees % 360) + 360) % 360;
}

function parseStop(text) {
  const match = /^(.*?)(?:\s+(-?\d+(?:\.\d+)?)%)?$/.exec(text);
  const colour = parseColour(match[1]);
  if (!colour)
    return null;
  return {colour, at: match[2] === undefined ? null : clamp(Number(match[2]), 0, 100)};
}

/** Places the stops that say no place between their neighbours, as browsers do. */
function placeStops(stops) {
  if (stops[0].at === null)
    stops[0].at = 0;
  if (stops[stops.length - 1].at === null)
    stops[stops.length - 1].at = 100;
  for (let i = 1; i < stops.length; ++i) {
    if (stops[i].at === null) {
      let next = i;
      while (stops[next].at === null)
        ++next;
      const from = stops[i - 1].at;
      stops[i].at = round(from + (stops[next].at - from) / (next - i + 1), 2);
    }
    stops[i].at = Math.max(stops[i].at, stops[i - 1].at);
  }
  return stops;
}

/**
 * What a value says: {kind: 'colour', colour} or {kind: 'gradient', angle, stops: [{colour, at}]};
 * null when it is neither.
 */
export function parseValue(text) {
  const colour = parseColour(text);
  if (colour)
    return {kind: 'colour', colour};
  const match = /^\s*linear-gradient\((.*)\)\s*$/is.exec(text);
  if (!match)
    return null;
  const parts = splitAtCommas(match[1]);
  let angle = parseAngle(parts[0]);
  if (angle === null)
    angle = 180;
  else
    parts.shift();
  const stops = parts.map(parseStop);
  if (stops.length < 2 || stops.includes(null))
    return null;
  return {kind: 'gradient', angle, stops: placeStops(stops)};
}

export function gradientText(angle, stops) {
  const list = stops.map(({colour, at}) => `${toText(colour)} ${round(at, 2)}%`);
  return `linear-gradient(${round(angle, 2)}deg, ${list.join(', ')})`;
}

/** The colour of a gradient at a place, as browsers mix it. */
export function colourAt(stops, at) {
  const next = stops.findIndex((stop) => stop.at >= at);
  if (next <= 0)
    return {...stops[next < 0 ? stops.length - 1 : 0].colour};
  const a = stops[next - 1];
  const b = stops[next];
  const share = b.at === a.at ? 0 : (at - a.at) / (b.at - a.at);
  const from = toRgb(a.colour);
  const to = toRgb(b.colour);
  const mixed = from.map((one, i) => Math.round(one + (to[i] - one) * share));
  return fromRgb(mixed, a.colour.a + (b.colour.a - a.colour.a) * share, a.colour);
}

/** How well two colours can be told apart, 1 to 21 (WCAG 2.1, contrast ratio). */
export function contrast(one, other) {
  const light = (rgb) => {
    const [r, g, b] = rgb.map((part) => {
      const c = part / 255;
      return c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4;
    });
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
  };
  const [a, b] = [light(one), light(other)].sort((x, y) => y - x);
  return (a + 0.05) / (b + 0.05);
}

export {clamp, round};
