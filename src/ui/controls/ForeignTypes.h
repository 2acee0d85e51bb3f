#pragma once

#include <QImage>
#include <QtQml/qqmlregistration.h>

/// Pictures are handed from one property to another.
struct ImageType {
    Q_GADGET
    QML_FOREIGN(QImage)
    QML_ANONYMOUS
};
