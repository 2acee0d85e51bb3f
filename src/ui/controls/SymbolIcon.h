#pragma once

#include <QColor>
#include <QIcon>

/// A symbol as an icon of one colour, and of another while it is selected, sharp at every size and
/// resolution.
QIcon symbolIcon(const QString& name, const QColor& color, const QColor& selectedColor);
