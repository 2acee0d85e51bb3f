#pragma once

#include <QList>
#include <QString>

/// Characters as a reader counts them: a letter with its accents is one, and so is a carriage return with the
/// line feed behind it.
namespace Characters {

qsizetype count(QStringView text);

/// Whether the ASCII character at `index` is a whole character and not a part of one.
bool isWhole(QStringView text, qsizetype index);

/// Where the ASCII character `wanted` stands as a whole character, from `from` on; -1 when it does not.
qsizetype indexOf(QStringView text, QChar wanted, qsizetype from = 0);

/// The pieces between the separators but for the empty ones.
QList<QStringView> split(QStringView text, QChar separator);

/// Without the spaces, of any width, and tabs at both ends.
QStringView trimSpaces(QStringView text);

/// Without the spaces, tabs and line breaks at both ends.
QStringView trimSpacesAndLineBreaks(QStringView text);

} // namespace Characters
