#pragma once

#include <QString>

#include <optional>

/// Whether a word belongs to the language itself and so cannot name a variable.
bool isKeyword(const QString& word);

/// "first" is 1, "tenth" 10, "last" -1; nothing for any other word.
std::optional<qlonglong> ordinalNumber(const QString& word);
