// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The dialog's side of the page contract, run before any script of the page in the page's own world
// (another world sees neither returnValue nor childWindowType, and its onresize is not the page's).
// What it needs is taken from the window at once, so that a page may replace it later.
(function () {
    'use strict';
    const token = '@token@';
    const mostCharacters = @mostCharacters@;
    const mostElements = @mostElements@;
    const deepest = @deepest@;
    const page = window;
    const ask = page.prompt.bind(page);
    const openHere = page.open.bind(page);
    const stringify = JSON.stringify;
    const parse = JSON.parse;
    const toText = String;
    const tell = page.reportError.bind(page);
    let kept = null;

    // The engine does not tell pages the colours of the program; its style sheets find them here.
    const colours = new CSSStyleSheet();
    colours.replaceSync(':root { @style@ }');
    document.adoptedStyleSheets = [colours];

    // A leading byte order mark would be lost on the way unless it is escaped.
    function quoted(text) {
        return text.charCodeAt(0) === 0xFEFF ? '"\\ufeff' + stringify(text.substring(1)).substring(1)
                                             : stringify(text);
    }

    // A value as an array that begins with its kind. Put together by hand: a page that gives arrays
    // a toJSON of their own must not change its result.
    function written(value, room, depth) {
        switch (typeof value) {
        case 'string':
            room.characters -= value.length;
            if (room.characters < 0)
                throw room;
            return '["string",' + quoted(value) + ']';
        case 'number':
            return value - value === 0 ? '["number",' + toText(value) + ']' : '["other"]';
        case 'boolean':
            return value ? '["boolean",true]' : '["boolean",false]';
        case 'undefined':
            return '["undefined"]';
        case 'object':
            return value === null ? '["null"]' : writtenObject(value, room, depth);
        default:
            return '["other"]';
        }
    }

    // An object with a length is read by the names of its elements.
    function writtenObject(object, room, depth) {
        const length = member(object, 'length');
        if (typeof length !== 'number' || !(length > 0) || depth >= deepest)
            return '["other"]';
        room.elements -= length;
        if (room.elements < 0)
            throw room;
        let text = '["array"';
        for (let i = 0; i < length; ++i)
            text += ',' + written(member(object, toText(i)), room, depth + 1);
        return text + ']';
    }

    function member(object, name) {
        try {
            return object[name];
        } catch (e) {
            return undefined;
        }
    }

    function result() {
        const room = { characters: mostCharacters, elements: mostElements };
        try {
            return written(member(page, 'returnValue'), room, 0);
        } catch (e) {
            return e === room ? '["too large"]' : '["other"]';
        }
    }

    function childWindowType() {
        const type = member(page, 'childWindowType');
        const kind = typeof type;
        const text = kind === 'number' || kind === 'string' ? toText(type).substring(0, 100) : '';
        return '["' + kind + '",' + quoted(text) + ']';
    }

    function picked(value, guid) {
        const callback = member(page, 'doSelectAssetCallback');
        if (typeof callback !== 'function')
            return;
        try {
            callback.call(page, value, guid);
        } catch (e) {
            tell(e); // for the page's own error handling
        }
    }

    // Whether a window of that name is this page or one of its frames: such a request opens nothing.
    function isOwn(name) {
        const lower = name.toLowerCase();
        if (lower === '_self' || lower === '_top' || lower === '_parent')
            return true;
        if (name === '' || lower === '_blank')
            return false;
        if (name === page.name)
            return true;
        for (const frame of document.querySelectorAll('iframe,frame')) {
            if (frame.name === name)
                return true;
        }
        return false;
    }

    page.open = function open(url, name, features) {
        if (name !== undefined && isOwn(toText(name)))
            return openHere(url, name, features);
        const answer = ask(token, '["open",' + childWindowType() + ']');
        if (answer) {
            const asset = parse(answer);
            picked(asset[0], asset[1]);
        }
        return null;
    };

    page.close = function close() {
        if (kept === null) {
            kept = result();
            ask(token, '["close"]');
        }
    };

    // Whether it was the window's size that changed, or the page's own wish.
    function resized(byWindow) {
        const body = document.body;
        if (body)
            ask(token, '["resize",' + body.offsetWidth + ',' + body.offsetHeight + ',' + byWindow + ']');
    }

    function attach() {
        page.onresize = function (event) { resized(event instanceof Event && event.isTrusted); };
    }

    Object.defineProperty(page, 'zelDialog', {
        value: Object.freeze({
            attach: attach,
            resized: function () { resized(false); },
            result: function () { return kept === null ? result() : kept; },
            childWindowType: childWindowType,
            picked: picked
        })
    });
})();
