// SPDX-License-Identifier: MIT
// The list of clips. All that it knows comes through the bridge object `_vexa`; what the user does goes there as action
// URLs.
(function () {
    'use strict';

    var clips = [];
    var current = {id: 0, playing: false};
    var tag = '';

    function byId(id) { return document.getElementById(id); }

    function make(name, className, text) {
        var element = document.createElement(name);
        element.className = className;
        if (text !== undefined)
            element.textContent = text;
        return element;
    }

    function act(path) { window._vexa.invokeNative('act', 'kx://action.cmd' + path); }

    function itemOf(clip) {
        var item = document.createElement('li');
        item.dataset.id = clip.id;
        var button = make('button', '');
        button.addEventListener('click', function () { act('/play?id=' + clip.id); });
        var poster = make('span', 'poster');
        var image = make('img', '');
        image.src = clip.poster;
        image.alt = '';
        poster.append(image, make('span', 'time', clip.time), make('span', 'progress'));
        var about = make('span', 'about');
        about.append(make('div', 'title', clip.title), make('div', 'note'));
        button.append(poster, about);
        item.append(button);
        return item;
    }

    function note(clip) {
        if (clip.id !== current.id)
            return clip.tags.join(' · ');
        return current.playing ? 'Playing' : 'Paused';
    }

    function isListed(clip) { return tag === '' || clip.tags.includes(tag); }

    // Items stay while their clip does, so that posters do not flicker and the keyboard stays where it is.
    function show() {
        var list = byId('clips');
        clips.forEach(function (clip) {
            var item = list.querySelector('[data-id="' + clip.id + '"]') || list.appendChild(itemOf(clip));
            item.hidden = !isListed(clip);
            item.classList.toggle('current', clip.id === current.id);
            item.querySelector('.note').textContent = note(clip);
        });
        byId('filter').hidden = tag === '';
        byId('filter').textContent = '#' + tag + ' ✕';
    }

    function showPosition(position) {
        var progress = document.querySelector('li.current .progress');
        if (progress)
            progress.style.transform = 'scaleX(' + position.fraction + ')';
    }

    // What the player calls.
    function registerPageMethods(bridge) {
        bridge.registerMethod('showClips', function (list) {
            clips = list.clips;
            byId('status').textContent = list.status;
            show();
        });
        bridge.registerMethod('showPlaying', function (newCurrent) {
            current = newCurrent;
            document.querySelectorAll('.progress').forEach(function (progress) { progress.style.transform = ''; });
            show();
        });
        // The one below in the list as it is filtered; below the last one comes the first.
        bridge.registerMethod('nextClip', function (clip, answer) {
            var listed = clips.filter(isListed);
            var here = listed.findIndex(function (other) { return other.id === clip.id; });
            var next = listed[(here + 1) % listed.length];
            answer({id: next ? next.id : 0});
        });
        bridge.registerMethod('showTag', function (chosen) {
            tag = chosen.tag;
            show();
        });
    }

    document.addEventListener('DOMContentLoaded', function () {
        var bridge = window._vexa;
        registerPageMethods(bridge);
        byId('filter').addEventListener('click', function () { act('/tag?name='); });
        bridge.invokeNativeOnce('open', {}, function (state) {
            clips = state.clips;
            current = {id: state.id, playing: state.playing};
            tag = state.tag;
            byId('status').textContent = state.status;
            show();
            bridge.invokeNative('watchPosition', {}, showPosition);
            bridge.invokeNative('common_HN_loadCompleted');
        });
    });
})();
