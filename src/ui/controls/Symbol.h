#pragma once

#include <QPainterPath>
#include <QString>

/// The outline of a symbol, fitted into a square of the given side in points: "play.fill", "pause.fill",
/// "backward.fill", "forward.fill", "music.note", or one of a menu or a window. An unknown name gives an
/// empty path.
QPainterPath symbolOutline(const QString& name, double side);
