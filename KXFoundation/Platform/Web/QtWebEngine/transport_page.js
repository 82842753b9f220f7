// SPDX-License-Identifier: MIT
// Gives the page `webkit.messageHandlers.<name>.postMessage(value)`. Runs in the page's world of every frame before
// the page's scripts; the two worlds meet once, through an event target that only they hold. Everything is taken
// before the page can replace it.
(function (handOver, names) {
    'use strict';
    var TextEvent = CompositionEvent; // of the events that carry a plain string, the lightest
    var target = new EventTarget();
    var dispatch = target.dispatchEvent.bind(target);
    var stringify = JSON.stringify;
    var handlers = {};

    function post(kind, index, text) {
        dispatch(new TextEvent(kind + index, { __proto__: null, data: text }));
    }

    names.forEach(function (name, index) {
        function postMessage(value) {
            var json;
            if (typeof value === 'string') {
                post('s', index, value);
            } else {
                if (typeof value === 'object' && value !== null)
                    json = stringify(value);
                if (json !== undefined)
                    post('j', index, json);
                else
                    post('u', index, '');
            }
        }
        Object.defineProperty(handlers, name, {
            value: Object.freeze({ postMessage: postMessage }),
            enumerable: true
        });
    });
    Object.defineProperty(window, 'webkit', {
        value: Object.freeze({ messageHandlers: Object.freeze(handlers) }),
        configurable: true,
        enumerable: true,
        writable: true
    });
    document.dispatchEvent(new FocusEvent(handOver, { relatedTarget: target }));
})
