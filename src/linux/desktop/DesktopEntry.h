#pragma once

#include <QString>

#include <optional>

/// Values of the main group of a desktop entry, by key, and command lines as they stand there.
namespace DesktopEntry {

/// None when the key is missing.
std::optional<QString> value(const QString& entry, const QString& key);

/// The value of "Exec" that starts a program without arguments.
QString command(const QString& program);

/// The program that a value of "Exec" starts: its first word; none when that cannot be read.
std::optional<QString> program(const QString& command);

} // namespace DesktopEntry
