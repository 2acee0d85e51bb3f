#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

/// A version that a feed offers.
struct UpdateItem {
    QString version;              ///< what versions are compared by
    QString shortVersion;         ///< what people know it by; the same where the feed says nothing else
    QString minimumSystemVersion; ///< empty: any
    QString notes;                ///< plain text; may be empty
    QUrl address;                 ///< of the package
    qint64 length = 0;            ///< of the package, in bytes; 0 when the feed does not tell
    QByteArray signature; ///< of the package, by Ed25519: 64 bytes, or none when there is no such thing
};

/// The items of an update feed: RSS with the attributes and elements of Sparkle. Items of other systems, of
/// channels that have to be asked for, and those without a version or a package are left out. Nothing when
/// the text is no such feed; `fault` then says why, for the log.
std::optional<QList<UpdateItem>> parseAppcast(const QByteArray& text, QString& fault);

/// The newest item that can run on a system of this version, which is empty when the system has none: then
/// any can.
std::optional<UpdateItem> newestThatFits(const QList<UpdateItem>& items, const QString& systemVersion);
