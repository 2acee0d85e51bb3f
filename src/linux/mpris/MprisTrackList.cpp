#include "linux/mpris/MprisTrackList.h"

#include "base/RunLoop.h"
#include "linux/dbus/DBusValue.h"
#include "linux/dbus/WhenAnswered.h"
#include "linux/mpris/MprisNames.h"

#include <QDBusMetaType>

#include <algorithm>

namespace {

constexpr int timeLimitMilliseconds = 5000;
constexpr double burstRest = 0.3; // seconds

} // namespace

MprisTrackList::MprisTrackList(const QDBusConnection& bus, const QString& uniqueName, RunLoop& runLoop)
    : _runLoop(runLoop)
    , _proxy(uniqueName, Mpris::objectPath, bus)
    , _properties(uniqueName, Mpris::objectPath, bus)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    _proxy.setTimeout(timeLimitMilliseconds);
    _properties.setTimeout(timeLimitMilliseconds);
}

void MprisTrackList::learn()
{
    whenAnswered(_properties.Get(Mpris::rootInterface, QStringLiteral("HasTrackList")), this,
                 [this](const QDBusPendingReply<QDBusVariant>& reply) {
                     if (!reply.isValid()) {
                         learnAgain();
                         return;
                     }
                     _backoff.reset();
                     const bool existed = std::exchange(_exists, reply.value().variant().toBool());
                     if (_exists && !existed) {
                         fetch();
                     } else if (!_exists) {
                         _tracks.clear();
                     }
                 });
}

void MprisTrackList::learnAgain()
{
    if (const auto delay = _backoff.next()) {
        _runLoop.after(*delay, this, [this] { learn(); });
    }
}

bool MprisTrackList::contains(const MprisTrack& track) const
{
    return std::any_of(_tracks.begin(), _tracks.end(), [&track](const MprisTrack& listed) {
        return listed.title == track.title && listed.artist == track.artist;
    });
}

void MprisTrackList::goTo(const MprisTrack& track)
{
    if (!track.hasProperId()) {
        qCInfo(mprisLog, "a listed track has no proper identifier: %ls", qUtf16Printable(track.id));
        return;
    }
    whenAnswered(_proxy.GoTo(QDBusObjectPath(track.id)), this, [](const QDBusPendingReply<>& reply) {
        if (reply.isError()) {
            qCInfo(mprisLog, "GoTo was refused: %ls", qUtf16Printable(reply.error().message()));
        }
    });
}

void MprisTrackList::changed()
{
    _backoff.reset();
    if (!std::exchange(_isFetchScheduled, true)) {
        _runLoop.after(burstRest, this, [this] {
            _isFetchScheduled = false;
            fetch();
        });
    }
}

void MprisTrackList::fetch()
{
    whenAnswered(_properties.Get(Mpris::trackListInterface, QStringLiteral("Tracks")), this,
                 [this, round = ++_round](const QDBusPendingReply<QDBusVariant>& reply) {
                     if (round != _round) {
                         return;
                     }
                     const QVariant value = reply.isValid() ? reply.value().variant() : QVariant();
                     if (const auto paths = DBusValue::list<QList<QDBusObjectPath>>(value, "ao")) {
                         fetchTracks(*paths);
                     } else {
                         fetchAgain(reply.isValid() ? QLatin1String(value.typeName())
                                                    : reply.error().message());
                     }
                 });
}

/// The tracks stay as they were until the player sends a valid list.
void MprisTrackList::fetchAgain(const QString& failure)
{
    const auto delay = _backoff.next();
    if (delay == Backoff::first) {
        qCWarning(mprisLog, "a track list cannot be read: %ls", qUtf16Printable(failure));
    }
    if (delay) {
        _runLoop.after(*delay, this, [this, round = _round] {
            if (round == _round) {
                fetch();
            }
        });
    }
}

void MprisTrackList::fetchTracks(QList<QDBusObjectPath> wanted)
{
    if (wanted.isEmpty()) {
        _backoff.reset();
        _tracks.clear();
        return;
    }
    if (wanted.size() > mostTracks) {
        qCInfo(mprisLog, "a list of %lld tracks is cut short", static_cast<qlonglong>(wanted.size()));
        wanted.resize(mostTracks);
    }
    whenAnswered(_proxy.GetTracksMetadata(wanted), this,
                 [this, round = _round](const QDBusPendingReply<QList<QVariantMap>>& reply) {
                     if (round != _round) {
                         return;
                     }
                     if (!reply.isValid()) {
                         fetchAgain(reply.error().message());
                         return;
                     }
                     _backoff.reset();
                     const auto metadata = reply.value();
                     _tracks.clear();
                     for (const QVariantMap& track : metadata.first(std::min(metadata.size(), mostTracks))) {
                         _tracks.append(MprisTrack::fromMetadata(track));
                     }
                 });
}
