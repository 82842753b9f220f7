// SPDX-License-Identifier: MIT
// Strict scripts are harder to tell apart: the engine does not show their functions. Loaded under one address by one
// frame alone, and under another by both.
(function () {
    'use strict';
    var name = document.currentScript.src.endsWith('?shared') ? 'shared strict script' : 'strict script';
    window.ways['top.location= in a ' + name] = function (url) {
        var div = document.createElement('div');
        div.addEventListener('click', () => { top.location = url; });
        return div;
    };
})();
