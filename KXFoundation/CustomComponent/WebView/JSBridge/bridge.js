;(function(){ // SPDX-License-Identifier: MIT
    // The page's end of the bridge. Plain ES5, and not in strict mode: a global that a page made with `var` cannot be
    // deleted, which strict mode turns into an error.
    var bridgeName = '__h5BridgeName__';
    var nativeName = '__h5NativeMapBridgeName__';
    var callersName = bridgeName + 'Callers';
    var midBound = 9007199254740992; // 2^53: adding 1 to it gives it again

    function deliver(text) {
        var handlers;
        if (window[nativeName]) {
            window[nativeName].h5InvokeNative(text);
            return;
        }
        handlers = window.webkit && window.webkit.messageHandlers;
        if (handlers && handlers[nativeName]) {
            handlers[nativeName].postMessage(text);
        }
        // Deliberate: without a way to the program the message is dropped without a word.
    }

    var PNJSBridge = {
        createNew: function (name) {
            var bridge = {};
            bridge.name = name;
            bridge.mid = 1; // the id of the latest one-shot call; so the first one sent is 2
            bridge.methodHandler = Object.create(null); // no names but those that are registered
            bridge.responseCallbacks = Object.create(null);

            // Offers a method to the program; without a handler it is withdrawn.
            bridge.registerMethod = function (handlerName, handler) {
                if (handler) {
                    bridge.methodHandler[handlerName] = handler;
                } else {
                    delete bridge.methodHandler[handlerName];
                }
            };
            bridge.registerHandler = bridge.registerMethod;

            bridge.doInvokeNative = function (type, message) {
                deliver(JSON.stringify({type: type, message: message}));
            };

            // Deliberate: a one-shot call without a callback gets no id, since no answer can find its way.
            bridge.doSend = function (message, responseCallback) {
                var key;
                if (responseCallback) {
                    key = message.method;
                    if (message.once) {
                        bridge.mid += 1;
                        if (bridge.mid >= midBound) {
                            bridge.mid = 1;
                        }
                        key += bridge.mid;
                        message.mid = bridge.mid;
                    }
                    bridge.responseCallbacks[key] = responseCallback;
                }
                bridge.doInvokeNative('method', message);
            };

            // What the arguments mean depends on how many there are.
            bridge._invokeNative = function (handlerName, once, data, responseCallback) {
                if (arguments.length === 2) {
                    bridge.doSend({method: handlerName, data: {}, once: once});
                } else if (arguments.length === 3) {
                    if (typeof data === 'function') {
                        bridge.doSend({method: handlerName, data: {}, once: once}, data);
                    } else {
                        bridge.doSend({method: handlerName, data: data, once: once});
                    }
                } else if (arguments.length === 4) {
                    bridge.doSend({method: handlerName, data: data, once: once}, responseCallback);
                }
            };

            function callWithOnce(once, given) {
                if (given.length >= 1 && given.length <= 3) {
                    bridge._invokeNative.apply(bridge, [given[0], once].concat(Array.prototype.slice.call(given, 1)));
                }
            }

            // (name), (name, data), (name, callback) or (name, data, callback). The callback stays for every later
            // answer of that name.
            bridge.invokeNative = function () {
                callWithOnce(0, arguments);
            };

            // The same for a single answer.
            bridge.invokeNativeOnce = function () {
                callWithOnce(1, arguments);
            };

            // The callback gets "1" or "0": whether the program has the method.
            bridge.canInvokeNative = function (method, responseCallback) {
                if (responseCallback) {
                    bridge.responseCallbacks[method] = responseCallback;
                    bridge.doInvokeNative('invokeTest', {method: method, data: {}});
                }
            };

            // Where the program's messages come in.
            bridge.invokeH5 = function (m) {
                if (m.type === 'method') {
                    bridge.invokeH5Method(m.message);
                } else if (m.type === 'handler') {
                    bridge.invokeH5Handler(m.message);
                }
            };

            bridge.invokeH5Handler = function (message) {
                var key = message.mid ? message.method + message.mid : message.method;
                var callback = bridge.responseCallbacks[key];
                if (!callback) {
                    console.error("can't find callback:" + key);
                    return;
                }
                callback(message.data);
                if (message.mid) {
                    delete bridge.responseCallbacks[key];
                }
            };

            bridge.invokeH5Method = function (message) {
                var handler = bridge.methodHandler[message.method];
                if (!handler) {
                    return;
                }
                handler(message.data, function (data) {
                    // Deliberate: 0, "", false and null answer with {} like no data at all.
                    var answer = {method: message.method, data: data || {}};
                    if (message.mid) {
                        answer.mid = message.mid;
                        answer.once = 1;
                    }
                    bridge.doInvokeNative('handler', answer);
                });
            };

            return bridge;
        }
    };

    // What a page left for the bridge before it was there. One function that throws does not cost the others their turn.
    function _handleLastH5Callers() {
        var callers = window[callersName];
        var i;
        if (!Array.isArray(callers)) {
            return;
        }
        for (i = 0; i < callers.length; i += 1) {
            try {
                callers[i](window[bridgeName]);
            } catch (error) {
                setTimeout(function (thrown) { throw thrown; }, 0, error); // to the page's error handlers
            }
        }
        window[callersName] = undefined; // all that can be done to a `var`
        delete window[callersName];
    }

    if (!window[bridgeName]) {
        window[bridgeName] = PNJSBridge.createNew('main' + Math.ceil(Math.random() * 1000));
        setTimeout(_handleLastH5Callers, 0);
    }
})();
