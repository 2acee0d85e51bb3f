#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>

/// A player of our own on a bus: answers as the real ones do, remembers what it was told to do, and
/// misbehaves where a test wants it to.
class MprisStandIn : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /// Registers "org.mpris.MediaPlayer2." + suffix on a connection of its own to the bus at `address` (the
    /// session bus if empty).
    explicit MprisStandIn(const QString& suffix, const QString& address = {});
    ~MprisStandIn() override;

    bool isRegistered() const { return _isRegistered; }

    /// Also owns another name.
    void addName(const QString& suffix);

    /// Changes properties of the player interface and tells everybody.
    void change(const QVariantMap& properties);

    /// Changes them without a word.
    void set(const QVariantMap& properties) { _properties.insert(properties); }

    /// Tells that a property is no longer valid without telling its value.
    void invalidate(const QString& property);

    /// Says that the position is now this, in microseconds, and tells everybody.
    void seek(qlonglong microseconds);

    static QVariantMap metadata(const QString& id, const QString& title, const QString& artist,
                                const QString& album, double seconds);
    static QVariantMap playing(const QVariantMap& metadata);

    /// Has a track list from now on, and tells everybody.
    void setTracks(const QList<QVariantMap>& tracks);

    QVariant property(const QString& name) const { return _properties.value(name); }

    /// Every method call so far, as "PlayPause" or "SetPosition /t/1 42500000".
    QStringList calls;

    bool isMute = false;        ///< answers nothing
    bool isRefusing = false;    ///< answers "access denied"
    bool obeysTransport = true; ///< PlayPause, Pause, Play and the seeks have their effect
    bool announcesSeeks = true; ///< emits Seeked after a seek

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QVariant answer(const QDBusMessage& message);
    void obey(const QDBusMessage& message);
    void goTo(qlonglong microseconds);

    QDBusConnection _bus;
    QVariantMap _properties;
    QList<QVariantMap> _tracks;
    bool _isRegistered = false;
};
