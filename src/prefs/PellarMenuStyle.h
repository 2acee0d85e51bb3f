#pragma once

#include <QList>
#include <QString>

/// How the context menu is drawn.
enum class PellarMenuStyle { liquidGlass, classic };

/// Every style, in the order in which the settings list them.
const QList<PellarMenuStyle>& allMenuStyles();

/// The form in which a style is stored.
QString rawValue(PellarMenuStyle style);
QString displayName(PellarMenuStyle style);

/// The style with this raw value; `classic` for every other text, as the glass panel is opt-in.
PellarMenuStyle menuStyle(const QString& rawValue);
