// What the page posts messages with: window.webkit.messageHandlers.NAME.postMessage(object). Messages from
// before the channel to the program is open wait for it.
(function () {
    'use strict';
    let native = null;
    const waiting = [];
    function handler(name) {
        return Object.freeze({
            postMessage: function (body) {
                const message = [name, JSON.stringify(body)];
                if (native) {
                    native.post(...message);
                } else {
                    waiting.push(message);
                }
            }
        });
    }
    const messageHandlers = Object.freeze({
        pellarAuth: handler('pellarAuth'),
        pellarConsole: handler('pellarConsole')
    });
    Object.defineProperty(window, 'webkit', { value: Object.freeze({ messageHandlers }) });
    new QWebChannel(qt.webChannelTransport, function (channel) {
        native = channel.objects.native;
        waiting.splice(0).forEach(message => native.post(...message));
    });
})();
