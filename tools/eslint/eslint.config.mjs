// SPDX-License-Identifier: MIT
// Scripts that run in pages. The bridge is linted as plain ES5, since any page has to take it.
import js from '@eslint/js';
import globals from 'globals';

export default [
    js.configs.recommended,
    {
        files: ['**/*.js'],
        languageOptions: {
            ecmaVersion: 2022,
            sourceType: 'script',
            globals: {...globals.browser, webkit: 'readonly', _vexa: 'readonly'},
        },
        linterOptions: {reportUnusedDisableDirectives: 'error'},
        rules: {
            eqeqeq: 'error',
            'no-implicit-globals': 'error',
            'no-shadow': 'error',
            'no-empty': 'off', // loops that only walk, catches that only guard
            'no-unused-vars': ['error', {caughtErrors: 'none'}],
        },
    },
    {
        files: ['**/JSBridge/*.js'],
        languageOptions: {ecmaVersion: 5},
        rules: {
            curly: 'error',
            'block-scoped-var': 'error',
            // Its name is filled in when the script is used.
            'no-restricted-globals': ['error', '_vexa', 'webkit'],
        },
    },
];
