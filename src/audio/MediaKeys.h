#pragma once

#include <QSet>
#include <QString>

struct Platform;

/// Controls sound whose maker is no known player: by a keystroke into the browser in front, so that the page
/// there reacts, or by the media keys that any other program listens to.
class MediaKeys
{
public:
    /// The values are the auxiliary-control key codes.
    enum class Key { playPause = 16, next = 17, previous = 18 };

    static const QSet<QString>& browserBundleIDs();

    explicit MediaKeys(Platform& platform);

    void send(Key key);

private:
    bool typeInto(qint64 browser, Key key);
    void broadcast(Key key);

    Platform& _platform;
};
