// SPDX-License-Identifier: MIT
// The part of the test pages that can start a navigation in every way there is. Every frame carries it; arm() puts
// an element into the frame's upper left corner that starts the navigation when it is clicked.
(function () {
    var ways = {};
    function link(url, target) {
        var a = document.createElement('a');
        a.href = url;
        if (target)
            a.target = target;
        return a;
    }
    function form(url, method, target) {
        var f = document.createElement('form');
        f.action = url;
        f.method = method;
        if (target)
            f.target = target;
        var button = document.createElement('button');
        button.name = 'action'; // what a page may well call its fields
        button.value = '1';
        f.appendChild(button);
        return f;
    }
    function script(run) {
        return function (url) {
            var div = document.createElement('div');
            div.onclick = function () { run(url); };
            return div;
        };
    }
    function put(element) {
        document.body.appendChild(element);
        return element;
    }

    ways['link _top'] = function (url) { return link(url, '_top'); };
    ways['link _self'] = function (url) { return link(url, '_self'); };
    ways['link _parent'] = function (url) { return link(url, '_parent'); };
    ways['link _blank'] = function (url) { return link(url, '_blank'); };
    ways['link to the main frame by name'] = function (url) { return link(url, 'mainwindow'); };
    ways['link rewritten while clicked'] = function (url) {
        var a = link('about:blank', '_top');
        a.onclick = function () { a.href = url; };
        return a;
    };
    ways['link in a closed shadow tree'] = function (url) {
        var host = document.createElement('div');
        var a = link(url, '_top');
        a.style.cssText = 'display:block;width:100%;height:100%';
        host.attachShadow({ mode: 'closed' }).appendChild(a);
        return host;
    };
    ways['form get _top'] = function (url) { return form(url, 'get', '_top'); };
    ways['form post _top'] = function (url) { return form(url, 'post', '_top'); };
    ways['form get _self'] = function (url) { return form(url, 'get'); };
    ways['location='] = script(function (url) { location = url; });
    ways['location.assign'] = script(function (url) { location.assign(url); });
    ways['location.replace'] = script(function (url) { location.replace(url); });
    ways['top.location='] = script(function (url) { top.location = url; });
    ways['top.location.replace'] = script(function (url) { top.location.replace(url); });
    ways['top.location= from a timer'] = script(function (url) { setTimeout(function () { top.location = url; }, 0); });
    ways['top.location= from a promise'] = script(function (url) { Promise.resolve().then(function () { top.location = url; }); });
    ways['open _top'] = script(function (url) { open(url, '_top'); });
    ways['open _blank'] = script(function (url) { open(url); });
    ways['a.click() _top'] = script(function (url) { put(link(url, '_top')).click(); });
    ways['a.click() out of the document'] = script(function (url) { link(url, '_top').click(); });
    ways['form.submit() _top'] = script(function (url) {
        HTMLFormElement.prototype.submit.call(put(form(url, 'get', '_top')));
    });
    ways['form.requestSubmit() _top'] = script(function (url) { put(form(url, 'post', '_top')).requestSubmit(); });
    ways['form.submit() _self'] = script(function (url) { HTMLFormElement.prototype.submit.call(put(form(url, 'post'))); });
    ways['javascript: link'] = function (url) { return link('javascript:void(top.location=' + JSON.stringify(url) + ')'); };
    ways['top.location= in eval'] = script(function (url) { (0, eval)('top.location=' + JSON.stringify(url)); });
    ways['meta refresh'] = script(function (url) {
        var meta = document.createElement('meta');
        meta.httpEquiv = 'refresh';
        meta.content = '0;url=' + url;
        document.head.appendChild(meta);
    });
    ways['history.back'] = script(function () { history.back(); });
    ways['history.go'] = script(function () { history.go(-1); });

    window.ways = ways;
    window.armed = null;
    function arm(element) {
        if (window.armed)
            window.armed.remove();
        window.armed = element;
        var area = element.localName === 'form' ? element.firstChild : element;
        area.style.cssText = 'position:fixed;left:0;top:0;width:300px;height:100px;display:block';
        document.body.appendChild(element);
    }

    addEventListener('message', function (event) {
        if (!event.data.way)
            return;
        arm(ways[event.data.way](event.data.url));
        top.postMessage({ armed: event.data.url }, '*');
    });

    // Tells the test when clicks begin to arrive.
    addEventListener('load', function () {
        var element = document.createElement('div');
        element.onclick = function () { top.postMessage({ clicked: window === top }, '*'); };
        arm(element);
        top.postMessage({ ready: window === top }, '*');
    });
})();
