#include "linux/mpris/MprisTrackList.h"

#include "base/RunLoop.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QLoggingCategory>

#include <algorithm>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.mpris", QtWarningMsg)

const QString rootInterface = QStringLiteral("org.mpris.MediaPlayer2");
const QString listInterface = QStringLiteral("org.mpris.MediaPlayer2.TrackList");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr int timeLimitMilliseconds = 5000;
constexpr double burstRest = 0.3; // seconds

QVariant propertyIn(const QDBusMessage& reply)
{
    return reply.type() == QDBusMessage::ReplyMessage
               ? reply.arguments().value(0).value<QDBusVariant>().variant()
               : QVariant();
}

/// The D-Bus value as a list of the given kind; empty when it is something else.
template<typename List>
List list(const QVariant& value, const char* signature)
{
    const bool isArgument = value.metaType() == QMetaType::fromType<QDBusArgument>();
    const auto argument = isArgument ? value.value<QDBusArgument>() : QDBusArgument();
    const bool isList = isArgument && argument.currentSignature() == QString::fromLatin1(signature);
    return isList ? qdbus_cast<List>(argument) : List();
}

} // namespace

MprisTrackList::MprisTrackList(QDBusConnection bus, QString uniqueName, RunLoop& runLoop)
    : _bus(std::move(bus))
    , _uniqueName(std::move(uniqueName))
    , _runLoop(runLoop)
{
    qDBusRegisterMetaType<QList<QVariantMap>>();
    call(propertiesInterface, QStringLiteral("Get"), {rootInterface, QStringLiteral("HasTrackList")},
         [this](const QDBusMessage& reply) {
             if (propertyIn(reply).toBool()) {
                 fetch();
             }
         });
}

bool MprisTrackList::contains(const MprisTrack& track) const
{
    return std::any_of(_tracks.begin(), _tracks.end(), [&track](const MprisTrack& listed) {
        return listed.title == track.title && listed.artist == track.artist;
    });
}

void MprisTrackList::goTo(const MprisTrack& track)
{
    call(listInterface, QStringLiteral("GoTo"), {QVariant::fromValue(QDBusObjectPath(track.id))},
         [](const QDBusMessage& reply) {
             if (reply.type() == QDBusMessage::ErrorMessage) {
                 qCInfo(log, "GoTo was refused: %ls", qUtf16Printable(reply.errorMessage()));
             }
         });
}

void MprisTrackList::changed()
{
    if (!std::exchange(_isFetchScheduled, true)) {
        _runLoop.after(burstRest, this, [this] {
            _isFetchScheduled = false;
            fetch();
        });
    }
}

void MprisTrackList::fetch()
{
    call(propertiesInterface, QStringLiteral("Get"), {listInterface, QStringLiteral("Tracks")},
         [this, round = ++_round](const QDBusMessage& reply) {
             if (round == _round && reply.type() == QDBusMessage::ReplyMessage) {
                 fetchTracks(propertyIn(reply));
             }
         });
}

void MprisTrackList::fetchTracks(const QVariant& paths)
{
    auto wanted = list<QList<QDBusObjectPath>>(paths, "ao");
    if (wanted.isEmpty()) {
        _tracks.clear();
        return;
    }
    if (wanted.size() > mostTracks) {
        qCInfo(log, "a list of %lld tracks is cut short", static_cast<qlonglong>(wanted.size()));
        wanted.resize(mostTracks);
    }
    call(listInterface, QStringLiteral("GetTracksMetadata"), {QVariant::fromValue(wanted)},
         [this, round = _round](const QDBusMessage& reply) {
             if (round != _round || reply.type() != QDBusMessage::ReplyMessage) {
                 return;
             }
             const auto metadata = list<QList<QVariantMap>>(reply.arguments().value(0), "aa{sv}");
             _tracks.clear();
             for (const QVariantMap& track : metadata.first(std::min(metadata.size(), mostTracks))) {
                 _tracks.append(MprisTrack::fromMetadata(track));
             }
         });
}

void MprisTrackList::call(const QString& interface, const QString& member, const QVariantList& arguments,
                          MprisCall::Answer answer)
{
    const MprisCall call{.player = _uniqueName,
                         .interface = interface,
                         .member = member,
                         .arguments = arguments,
                         .timeLimit = timeLimitMilliseconds};
    call.send(_bus, this, std::move(answer));
}
