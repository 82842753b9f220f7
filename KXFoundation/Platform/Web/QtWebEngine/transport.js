// SPDX-License-Identifier: MIT
// Carries text from a frame to native code. Runs in an isolated world of every frame before the page's own scripts,
// so a page can neither read the secret nor touch the built-ins used here.
//
// Native code reads the console. One line holds the secret and any number of records, "<kind><index>,<length>,<text>"
// each, with the length in UTF-16 units because the text may hold anything:
//
//   d  a document of the main frame begins      f  a line for the source frames
//   s  a posted string    j  a posted object as JSON    u  anything else that was posted; the index is the handler's
//
// What one task of the page posts travels together when the task ends: a line costs more than everything else on the
// way. A frame that goes away first, or a task that takes its time, sends at once.
(function (secret, handOver, handlerCount, sourceFrames) {
    'use strict';
    var print = console.debug.bind(console);
    var longestWait = 4; // ms
    var longestBatch = 65536; // UTF-16 units
    var settled = Promise.resolve();
    var waiting = '';
    var since = 0;
    var leaving = false;

    function flush() {
        var text = waiting;
        if (text !== '') {
            waiting = '';
            print(secret + text);
        }
    }

    function record(kind, index, text) {
        return kind + index + ',' + text.length + ',' + text;
    }

    function send(kind, text) {
        flush();
        print(secret + record(kind, 0, text));
    }

    function onPageHide() {
        leaving = true;
        flush();
    }

    function post(kind, index, text) {
        if (waiting === '') {
            since = performance.now();
            window.addEventListener('pagehide', onPageHide, true); // document.open() removes listeners: again
            settled.then(flush);
        }
        waiting += record(kind, index, text);
        if (leaving || waiting.length > longestBatch || performance.now() - since > longestWait)
            flush();
    }

    function listen(target, kind, index) {
        target.addEventListener(kind + index, function (event) {
            // A frame that spoils a child's built-ins before the scripts run there gets hold of the target. Only a
            // string has the length that it claims; anything else could forge records of the other kinds.
            var text = event.data;
            if (typeof text === 'string')
                post(kind, index, text);
        });
    }

    if (window === window.top)
        send('d', '');
    window.addEventListener('pageshow', function () { leaving = false; }, true);
    document.addEventListener(handOver, function (event) {
        event.stopImmediatePropagation();
        for (var index = 0; index < handlerCount; index++) {
            listen(event.relatedTarget, 's', index);
            listen(event.relatedTarget, 'j', index);
            listen(event.relatedTarget, 'u', index);
        }
    }, { capture: true, once: true });
    sourceFrames(function (text) { send('f', text); });
})
