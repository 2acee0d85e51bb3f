#include "prefs/PellarMenuStyle.h"

const QList<PellarMenuStyle>& allMenuStyles()
{
    static const QList<PellarMenuStyle> styles = {PellarMenuStyle::liquidGlass, PellarMenuStyle::classic};
    return styles;
}

QString rawValue(PellarMenuStyle style)
{
    return style == PellarMenuStyle::liquidGlass ? QStringLiteral("liquidGlass") : QStringLiteral("classic");
}

QString displayName(PellarMenuStyle style)
{
    return style == PellarMenuStyle::liquidGlass ? QStringLiteral("Liquid Glass") : QStringLiteral("Classic");
}

PellarMenuStyle menuStyle(const QString& rawValue)
{
    return rawValue == QLatin1String("liquidGlass") ? PellarMenuStyle::liquidGlass : PellarMenuStyle::classic;
}
