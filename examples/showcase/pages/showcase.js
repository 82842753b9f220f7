// SPDX-License-Identifier: MIT
// The page's half of the showcase: everything it knows comes through the bridge object `_vexa`.
(function () {
    'use strict';

    function byId(id) { return document.getElementById(id); }

    function say(text) { byId('status').textContent = text; }

    function show(clips) {
        var list = byId('clips');
        list.textContent = '';
        clips.forEach(function (clip) {
            var item = document.createElement('li');
            item.dataset.id = clip.id;
            item.textContent = clip.title;
            var length = document.createElement('span');
            length.textContent = clip.seconds + ' s';
            item.appendChild(length);
            list.appendChild(item);
        });
    }

    // What the player calls.
    function registerPageMethods(bridge) {
        bridge.registerMethod('markPlaying', function (data, answer) {
            document.querySelectorAll('#clips li').forEach(function (item) {
                item.classList.toggle('playing', item.dataset.id === String(data.id));
            });
            answer({marked: document.querySelectorAll('#clips li.playing').length});
        });
        bridge.registerMethod('showNotice', function (data) { say(data.text); });
    }

    // What the page calls.
    function wireButtons(bridge) {
        byId('play').addEventListener('click', function () {
            bridge.invokeNativeOnce('play', {id: 1}, function (answer) {
                say('Playing ' + answer.title);
                document.body.dataset.play = JSON.stringify(answer);
            });
        });
        byId('watch').addEventListener('click', function () {
            var seen = [];
            bridge.invokeNative('watchProgress', {id: 1, steps: 3}, function (answer) {
                seen.push(answer.percent);
                say('At ' + answer.percent + ' %');
                document.body.dataset.progress = JSON.stringify(seen);
            });
        });
        byId('probe').addEventListener('click', function () {
            var found = {};
            ['play', 'teleport'].forEach(function (method) {
                bridge.canInvokeNative(method, function (answer) {
                    found[method] = answer;
                    document.body.dataset.probe = JSON.stringify(found);
                });
            });
        });
    }

    document.addEventListener('DOMContentLoaded', function () {
        var bridge = window._vexa;
        registerPageMethods(bridge);
        wireButtons(bridge);
        bridge.invokeNativeOnce('listClips', {}, function (clips) {
            show(clips);
            say(clips.length + ' clips');
            bridge.invokeNative('common_HN_loadCompleted');
        });
    });
})();
