#include "Table.h"

#include <cstdio>

void Table::begin()
{
    row(QStringLiteral("what"), QStringLiteral("measured"), QStringLiteral("reach"),
        QStringLiteral("beside it"));
}

void Table::row(const QString& what, const QString& measured, const QString& reach, const QString& comparison)
{
    std::printf("%-44s %-22s %-12s %s\n", qPrintable(what), qPrintable(measured), qPrintable(reach),
                qPrintable(comparison));
    std::fflush(stdout);
}
