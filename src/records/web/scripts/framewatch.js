// SPDX-FileCopyrightText: 2026 The ZelWebServiceControls authors
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Runs in every frame inside a page, in a world of its own, and reports a frame that could not be
// loaded: the engine tells of the page itself only. A frame that shows the engine's error page is
// found by its address; the status of an answer cannot be seen, so it is asked for again.
(function () {
    'use strict';
    if (window === window.top)
        return;
    const report = function () { console.info('@token@'); };
    if (location.protocol === 'chrome-error:') {
        report();
    } else if (location.protocol === 'http:' || location.protocol === 'https:') {
        fetch(location.href, { method: 'HEAD' }).then(function (answer) {
            // A server that does not know the question says nothing about the frame.
            if (answer.status >= 400 && answer.status !== 405 && answer.status !== 501)
                report();
        }, function () {}); // what may not be asked counts as loaded
    }
})();
