// SPDX-License-Identifier: MIT
// Tells native code what may start a navigation in this frame. Runs in an isolated world of every frame before the
// page's own scripts; `send` takes one line of text and keeps the order. Lines are words parted by blanks, a URL last:
//
//   document <main|sub> <events|silent>            a document begins; silent ones never announce their navigations
//   navigate <main|sub> <user|script> <url>        this frame is about to leave its document; the initiator is same-origin
//   caller   <main|sub> <main|sub|none|unknown> <url>   whose script is running then, none without any (source_frames_page.js)
//   click    <main|sub> <user|script> <url>        a click in this frame; the URL is that of the link, else empty
//   form     <main|sub> <get|post> <url>           a form of this frame is being sent
//
// The world is isolated, so a page cannot touch the built-ins used here; what elements answer by name (a form's
// field named "action") is avoided by taking the getters from the prototypes.
(function (send) {
    'use strict';
    var role = window === window.top ? 'main' : 'sub';
    var navigation = window.navigation;

    function getter(type, name) {
        var get = Object.getOwnPropertyDescriptor(type.prototype, name).get;
        return function (object) { return get.call(object); };
    }
    var baseURI = getter(Node, 'baseURI');
    var formAction = getter(HTMLFormElement, 'action');
    var formMethod = getter(HTMLFormElement, 'method');

    function linkUrl(event) {
        var path = event.composedPath();
        for (var i = 0; i < path.length; i++) {
            var node = path[i];
            if (node instanceof HTMLAnchorElement || node instanceof HTMLAreaElement)
                return node.href;
            if (node instanceof SVGAElement)
                return new URL(node.href.baseVal, baseURI(node)).href;
        }
        return '';
    }

    function onClick(event) {
        var url = '';
        try { url = linkUrl(event); } catch (error) { /* not a URL: nothing will be loaded by it */ }
        if (url !== '' || event.isTrusted)
            send('click ' + role + (event.isTrusted ? ' user ' : ' script ') + url);
    }

    function onForm(event) {
        var form = event.target;
        if (!(form instanceof HTMLFormElement))
            return;
        var submitter = event.submitter || null;
        var url = submitter && submitter.hasAttribute('formaction') ? submitter.formAction : formAction(form);
        var method = submitter && submitter.hasAttribute('formmethod') ? submitter.formMethod : formMethod(form);
        send('form ' + role + (method === 'post' ? ' post ' : ' get ') + url);
    }

    function listen() {
        window.addEventListener('click', onClick, true);
        window.addEventListener('auxclick', onClick, true);
        window.addEventListener('submit', onForm, true);
        window.addEventListener('formdata', onForm, true); // form.submit() skips the submit event
    }

    send('document ' + role + (navigation && navigation.entries().length > 0 ? ' events' : ' silent'));
    listen();
    // document.open() takes the window's listeners away, and exchanges the root element.
    new MutationObserver(listen).observe(document, { childList: true });
    if (!navigation)
        return;
    navigation.addEventListener('navigate', function (event) {
        if (!event.destination.sameDocument && event.navigationType !== 'traverse')
            send('navigate ' + role + (event.userInitiated ? ' user ' : ' script ') + event.destination.url);
    });
    navigation.addEventListener('kxnavigationcaller', function (event) {
        send('caller ' + role + ' ' + event.detail);
    });
})
