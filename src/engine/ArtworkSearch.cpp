#include "engine/ArtworkSearch.h"

#include "base/WebAddress.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>

namespace {

/// Texts that differ in case only, in the language of the user, or in how accents are composed, fold alike.
QString folded(const QString& text)
{
    return QLocale().toLower(text).toCaseFolded().normalized(QString::NormalizationForm_C);
}

bool isFromAlbum(const QJsonValue& result, const QString& foldedAlbum)
{
    return folded(result[QStringLiteral("collectionName")].toString()).contains(foldedAlbum);
}

} // namespace

std::optional<QUrl> artworkSearchAddress(const QString& service, const QString& title, const QString& artist)
{
    const QString term = QString(artist + u' ' + title).trimmed();
    if (term.isEmpty()) {
        return std::nullopt;
    }
    return webAddress(service, QStringLiteral("/search"),
                      {{QStringLiteral("term"), term},
                       {QStringLiteral("media"), QStringLiteral("music")},
                       {QStringLiteral("entity"), QStringLiteral("song")},
                       {QStringLiteral("limit"), QStringLiteral("5")}});
}

std::optional<QUrl> chosenArtwork(const QByteArray& reply, const QString& album)
{
    const QJsonArray results = QJsonDocument::fromJson(reply)[QStringLiteral("results")].toArray();
    const auto isObject = [](const QJsonValue& value) { return value.isObject(); };
    if (results.isEmpty() || !std::all_of(results.begin(), results.end(), isObject)) {
        return std::nullopt;
    }
    auto chosen = results.begin();
    if (!album.isEmpty()) {
        const auto found =
            std::find_if(results.begin(), results.end(), [name = folded(album)](const QJsonValue& result) {
                return isFromAlbum(result, name);
            });
        chosen = found == results.end() ? chosen : found;
    }
    QString artwork = QJsonValue(*chosen)[QStringLiteral("artworkUrl100")].toString();
    artwork.replace(QStringLiteral("100x100"), QStringLiteral("600x600"));
    const QUrl address(artwork);
    return isWebAddress(address) ? std::optional(address) : std::nullopt;
}
