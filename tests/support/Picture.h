#pragma once

#include <QBuffer>
#include <QImage>

/// A picture file that is all of one colour.
inline QByteArray pictureFile(const QColor& color, QSize size = {8, 8}, const char* format = "png",
                              QImage::Format pixels = QImage::Format_RGB32)
{
    QImage image(size, pixels);
    image.fill(color);
    QBuffer buffer;
    image.save(&buffer, format);
    return buffer.data();
}

/// An address that is the file itself.
inline QString addressOf(const QByteArray& file)
{
    return QStringLiteral("data:image/any;base64,") + QString::fromLatin1(file.toBase64());
}
