// SPDX-License-Identifier: MIT
// Finds out whose script starts a navigation of this frame: the main frame's or a sub frame's of the same origin. Runs
// in the page's own world of every frame before the page's scripts, because only there the call stack shows them, and
// tells source_frames.js by an event. Frames of other origins never get here, and a page that forges the event speaks
// only about frames whose scripts it could run anyway, so nothing here is secret.
//
// Deliberate: not strict. The engine hides every function below a strict one on the stack.
(function () {
    var navigation = window.navigation;
    if (!navigation)
        return;

    // Everything is taken before the page can replace it.
    var apply = Reflect.apply;
    var getPrototypeOf = Object.getPrototypeOf;
    var getOwnPropertyDescriptor = Object.getOwnPropertyDescriptor;
    var defineProperty = Object.defineProperty;
    var PageError = Error;
    var PageEvent = CustomEvent;
    var dispatchEvent = EventTarget.prototype.dispatchEvent;
    var getEntriesByName = Performance.prototype.getEntriesByName;
    var split = String.prototype.split;
    function getter(type, name) { return getOwnPropertyDescriptor(type.prototype, name).get; }
    var initiatorType = getter(PerformanceResourceTiming, 'initiatorType');
    var destination = getter(NavigateEvent, 'destination');
    var destinationUrl = getter(NavigationDestination, 'url');
    var documentUrl = getter(Document, 'URL');

    function restore(name, previous) {
        if (previous)
            defineProperty(PageError, name, previous);
        else
            delete PageError[name];
    }

    // The call sites of the running scripts, this function's own first.
    function callSites() {
        var found = [];
        var oldLimit = getOwnPropertyDescriptor(PageError, 'stackTraceLimit');
        var oldPrepare = getOwnPropertyDescriptor(PageError, 'prepareStackTrace');
        defineProperty(PageError, 'stackTraceLimit', { value: 32, configurable: true, writable: true });
        defineProperty(PageError, 'prepareStackTrace', {
            value: function (error, sites) { found = sites; return ''; },
            configurable: true,
            writable: true
        });
        try {
            void new PageError().stack;
        } finally {
            restore('stackTraceLimit', oldLimit);
            restore('prepareStackTrace', oldPrepare);
        }
        return found;
    }

    var site = getPrototypeOf(callSites()[0]);
    var getFunction = site.getFunction;
    var getThis = site.getThis;
    var getFileName = site.getFileName;

    // Object.prototype of the world that a function was made in.
    function rootOf(object) {
        for (var up; (up = getPrototypeOf(object)) !== null; object = up) { }
        return object;
    }
    var ownRoot = Object.prototype;

    // The windows of this page that share our origin, the main frame's first.
    function windows() {
        var all = [window.top];
        for (var i = 0; i < all.length && all.length < 64; i++) {
            for (var n = 0, child; n < 64 && (child = all[i][n]) !== undefined; n++)
                all[all.length] = child;
        }
        var reachable = [];
        for (i = 0; i < all.length; i++) {
            try {
                if (all[i].Object && all[i].document)
                    reachable[reachable.length] = all[i];
            } catch (error) { /* of another origin */ }
        }
        return reachable;
    }

    function roleOf(frame) { return frame === window.top ? 'main' : 'sub'; }

    function hasScript(frame, url) {
        if (apply(split, apply(documentUrl, frame.document, []), ['#'])[0] === url)
            return true;
        var loaded = apply(getEntriesByName, frame.performance, [url, 'resource']);
        for (var i = 0; i < loaded.length; i++) {
            var type = apply(initiatorType, loaded[i], []);
            if (type !== 'iframe' && type !== 'frame' && type !== 'object' && type !== 'embed') // those run elsewhere
                return true;
        }
        return false;
    }

    // Strict functions hide themselves and their receiver: there the script's URL decides, if one side alone has it.
    function roleByScript(frames, url) {
        var inMain = false;
        var inSub = false;
        for (var i = 0; url && i < frames.length; i++) {
            if (!hasScript(frames[i], url))
                continue;
            if (frames[i] === window.top)
                inMain = true;
            else
                inSub = true;
        }
        return inMain === inSub ? null : inMain ? 'main' : 'sub';
    }

    function roleBySite(frames, callSite) {
        var running = apply(getFunction, callSite, []);
        var root = running ? rootOf(running) : null;
        if (root === ownRoot)
            return roleOf(window);
        var receiver = apply(getThis, callSite, []);
        for (var i = 0; i < frames.length; i++) {
            if (receiver === frames[i] || (root && root === frames[i].Object.prototype))
                return roleOf(frames[i]);
        }
        return roleByScript(frames, apply(getFileName, callSite, []));
    }

    function caller(sites) {
        if (sites.length <= 3) // callSites, caller's caller and the listener: no script of the page is running
            return 'none';
        var frames = windows();
        for (var i = 3; i < sites.length; i++) {
            var role = roleBySite(frames, sites[i]);
            if (role)
                return role;
        }
        return 'unknown';
    }

    function report(event) {
        var result = 'unknown';
        try { result = caller(callSites()); } catch (error) { /* a page that froze Error keeps its secret */ }
        var url = apply(destinationUrl, apply(destination, event, []), []);
        apply(dispatchEvent, navigation, [new PageEvent('kxnavigationcaller', { detail: result + ' ' + url })]);
    }

    navigation.addEventListener('navigate', function (event) { report(event); });
})
