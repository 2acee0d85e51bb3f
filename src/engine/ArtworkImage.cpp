#include "engine/ArtworkImage.h"

#include "base/HttpClient.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QUrl>

#include <algorithm>

namespace {

constexpr qsizetype mostBytes = 16LL * 1024 * 1024;
constexpr qint64 mostPixels = 24'000'000; // some hundred megabytes while it is decoded
constexpr int longestSide = 600;          // pixels
constexpr double downloadSeconds = 10;
constexpr int httpOk = 200;

/// "data:image/png;base64,iVBORw0…"; without ";base64" the content is percent-encoded.
QByteArray contentInAddress(const QString& address)
{
    const qsizetype comma = address.indexOf(u',');
    const QByteArray content = QByteArray::fromPercentEncoding(address.mid(comma + 1).toLatin1());
    const bool isBase64 = QStringView(address).left(comma).endsWith(u";base64", Qt::CaseInsensitive);
    return isBase64 ? QByteArray::fromBase64(content) : content;
}

/// Plain files only: a pipe or a device might never end.
QByteArray fileContent(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > mostBytes || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.read(mostBytes);
}

QByteArray download(const QUrl& url, const std::stop_token& stop)
{
    HttpRequest request;
    request.url = url;
    request.timeout = downloadSeconds;
    request.byteLimit = mostBytes;
    const HttpReply reply = HttpClient::sendAndWait(request, stop);
    return reply.status == httpOk ? reply.body : QByteArray();
}

} // namespace

QImage loadArtwork(const QString& address, const std::stop_token& stop)
{
    if (address.startsWith(QStringLiteral("data:"), Qt::CaseInsensitive)) {
        return address.size() > 2 * mostBytes ? QImage() : decodeArtwork(contentInAddress(address));
    }
    const QUrl url(address);
    if (url.isLocalFile()) {
        return decodeArtwork(fileContent(url.toLocalFile()));
    }
    return decodeArtwork(download(url, stop));
}

QImage decodeArtwork(const QByteArray& content)
{
    QBuffer buffer;
    buffer.setData(content);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && static_cast<qint64>(size.width()) * size.height() > mostPixels) {
        return {};
    }
    if (size.width() > longestSide || size.height() > longestSide) {
        const QSize fitted = size.scaled(longestSide, longestSide, Qt::KeepAspectRatio);
        reader.setScaledSize(fitted.expandedTo({1, 1}));
    }
    QImage image = reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (std::max(image.width(), image.height()) > longestSide) { // of a format that does not tell its size
        image = image.scaled(longestSide, longestSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    if (image.colorSpace().isValid()) {
        image.convertToColorSpace(QColorSpace::SRgb);
    }
    return image;
}
