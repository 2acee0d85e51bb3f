#pragma once

#include <QPainterPath>
#include <QString>

/// The outline of a symbol that menus use, in a unit square: "checkmark", "chevron.right", "heart",
/// "heart.fill", "hand.thumbsdown", "hand.thumbsdown.fill" or "list.bullet". An unknown name gives an empty
/// path.
QPainterPath menuSymbol(const QString& name);
