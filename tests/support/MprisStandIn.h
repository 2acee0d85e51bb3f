#pragma once

#include "support/BusStandIn.h"

#include <QStringList>

/// A player of our own on a bus: answers as the real ones do, remembers what it was told to do, and
/// misbehaves where a test wants it to.
class MprisStandIn : public BusStandIn
{
    Q_OBJECT

public:
    /// Has the name "org.mpris.MediaPlayer2." + suffix on the bus at `address` (the session bus if empty).
    explicit MprisStandIn(const QString& suffix, const QString& address = {});

    /// Also owns another name.
    void addName(const QString& suffix);

    /// Changes properties of the player interface and tells everybody.
    void change(const QVariantMap& properties);

    /// Tells that a property is no longer valid without telling its value.
    void invalidate(const QString& property);

    /// Says that the position is now this, in microseconds, and tells everybody.
    void seek(qlonglong microseconds);

    static QVariantMap metadata(const QString& id, const QString& title, const QString& artist,
                                const QString& album, double seconds);
    static QVariantMap playing(const QVariantMap& metadata);

    /// Has a track list from now on, and tells everybody.
    void setTracks(const QList<QVariantMap>& tracks);

    /// Tells that the track list is another one.
    void announceTracks();

    /// Every method call so far, as "PlayPause" or "SetPosition /t/1 42500000".
    QStringList calls;

    bool obeysTransport = true; ///< PlayPause, Pause, Play and the seeks have their effect
    bool announcesSeeks = true; ///< emits Seeked after a seek

protected:
    std::optional<QVariantList> perform(const QDBusMessage& call) override;

private:
    void obey(const QDBusMessage& message);
    void goTo(qlonglong microseconds);

    QList<QVariantMap> _tracks;
};
