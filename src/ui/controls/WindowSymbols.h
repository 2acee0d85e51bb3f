#pragma once

#include <QPainterPath>
#include <QString>

/// The outline of a symbol that windows use, in a unit square: "slider.horizontal.3", "square.stack.3d.up",
/// "gearshape", "person.crop.circle", "info.circle", "circle.lefthalf.filled", "exclamationmark.circle",
/// "checkmark.circle.fill", "xmark.circle.fill", "chevron.up.chevron.down", "speaker.wave.2", "waveform",
/// "playpause", "chart.bar.fill", "headphones" or "bolt.fill". An unknown name gives an empty path.
QPainterPath windowSymbol(const QString& name);
