#include "linux/mpris/MprisTrack.h"

#include "linux/dbus/DBusValue.h"

#include <QDBusObjectPath>
#include <QRegularExpression>
#include <QUrl>

#include <cmath>

namespace {

QStringList texts(const QVariant& value)
{
    if (value.metaType() != QMetaType::fromType<QDBusArgument>()) {
        return value.toStringList();
    }
    const auto argument = value.value<QDBusArgument>();
    QStringList list;
    if (argument.currentType() != QDBusArgument::ArrayType) {
        return list;
    }
    argument.beginArray();
    while (!argument.atEnd()) {
        list.append(DBusValue::unwrapped(argument.asVariant()).toString());
    }
    argument.endArray();
    return list;
}

QString text(const QVariantMap& metadata, const QString& key)
{
    const QVariant value = DBusValue::unwrapped(metadata.value(key));
    if (value.metaType() == QMetaType::fromType<QString>()) {
        return value.toString();
    }
    QStringList parts = texts(value);
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

/// The text with nothing in it that scripts put between two texts, "|||" and "###": a joiner of no width
/// keeps the marks apart, so that it looks the same. A bar at its end would join those that follow.
QString separable(QString text)
{
    static const QRegularExpression marks(QStringLiteral(R"((\|)(?=\|\||$)|(#)(?=##))"));
    return text.replace(marks, QStringLiteral("\\1\\2\u2060"));
}

QString trackId(const QVariantMap& metadata)
{
    const QVariant value = DBusValue::unwrapped(metadata.value(QStringLiteral("mpris:trackid")));
    return value.metaType() == QMetaType::fromType<QDBusObjectPath>() ? value.value<QDBusObjectPath>().path()
                                                                      : value.toString();
}

std::optional<double> length(const QVariantMap& metadata)
{
    constexpr double microsecondsASecond = 1e6;
    constexpr double longest = 1e9; // seconds; live streams give the largest number there is
    bool isNumber = false;
    const double seconds =
        DBusValue::unwrapped(metadata.value(QStringLiteral("mpris:length"))).toDouble(&isNumber) /
        microsecondsASecond;
    const bool isPlausible = isNumber && std::isfinite(seconds) && seconds > 0 && seconds < longest;
    return isPlausible ? std::optional(seconds) : std::nullopt;
}

} // namespace

bool MprisTrack::hasProperId() const
{
    static const QRegularExpression objectPath(QStringLiteral("^(/[A-Za-z0-9_]+)+$"));
    return objectPath.match(id).hasMatch();
}

MprisTrack MprisTrack::fromMetadata(const QVariantMap& metadata)
{
    MprisTrack track{
        .id = trackId(metadata),
        .title = separable(text(metadata, QStringLiteral("xesam:title"))),
        .artist = separable(text(metadata, QStringLiteral("xesam:artist"))),
        .album = separable(text(metadata, QStringLiteral("xesam:album"))),
        .artworkUrl = text(metadata, QStringLiteral("mpris:artUrl")),
        .location = text(metadata, QStringLiteral("xesam:url")),
        .lyrics = text(metadata, QStringLiteral("xesam:asText")),
        .length = ::length(metadata),
    };
    if (track.title.isEmpty()) {
        track.title = separable(QUrl(track.location).fileName(QUrl::FullyDecoded));
    }
    return track;
}
