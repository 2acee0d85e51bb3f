#pragma once

#include <QObject>
#include <QSet>
#include <QString>

#include <optional>

struct MediaPlayer;
struct Platform;

/// Controls sound whose maker is no known player: by a keystroke into the browser in front, so that the page
/// there reacts, or by the media keys that any other program listens to. When the key has not changed what
/// the page does, the browser gets the command as a player. A media key that no program has grabbed becomes a
/// command to the player that sounds, or, without such a player, goes to the window in front. Each command
/// takes effect once.
class MediaKeys
{
public:
    /// The values are the auxiliary-control key codes.
    enum class Key { playPause = 16, next = 17, previous = 18 };

    static const QSet<QString>& browserBundleIDs();

    explicit MediaKeys(Platform& platform);

    void send(Key key);

private:
    struct Typed {
        QString player; ///< of the browser, by its id
        bool wasPlaying;
    };
    bool typeInto(qint64 browser, Key key);
    void watchEffect(const MediaPlayer* player);
    bool isWithoutEffect() const;
    void broadcast(Key key);
    bool command(Key key);

    Platform& _platform;
    QString _addressed;          ///< the player that got the last command, by its id
    std::optional<Typed> _typed; ///< the play/pause key whose effect is still to be seen
    quint64 _lastTyped = 0;
    QObject _context; ///< no look at an effect outlives it
};
