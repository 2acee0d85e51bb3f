;(function () {
    'use strict';
    function text(value) {
        if (value instanceof Error) {
            return value.message + ' @ ' + value.stack;
        }
        if (typeof value === 'object' && value !== null) {
            try {
                return JSON.stringify(value);
            } catch (error) {
                return String(value);
            }
        }
        return String(value);
    }
    function post(level, msg) {
        try {
            window.webkit.messageHandlers.pellarConsole.postMessage({ level: level, msg: msg });
        } catch (error) {
            // nobody listens
        }
    }
    ['log', 'warn', 'error'].forEach(function (level) {
        const wrapped = console[level];
        console[level] = function () {
            wrapped.apply(console, arguments);
            post(level, Array.from(arguments).map(text).join(' '));
        };
    });
    window.addEventListener('error', function (event) {
        post('error', 'window.error: ' + event.message + ' @ ' + event.filename + ':' + event.lineno);
    });
    window.addEventListener('unhandledrejection', function (event) {
        post('error', 'unhandledrejection: ' + event.reason);
    });
})();
