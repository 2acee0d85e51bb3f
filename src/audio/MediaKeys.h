#pragma once

#include <QSet>
#include <QString>

struct Platform;

/// Controls sound whose maker is no known player: by a keystroke into the browser in front, so that the page
/// there reacts, or by the media keys that any other program listens
/// to. Where no program has grabbed the key, the player that sounds gets the command itself; where there is
/// no such player, either, the window in front gets the key. Each command arrives once.
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
    bool command(Key key);

    Platform& _platform;
    QString _addressed; ///< the player that got the last command, by its id
};
