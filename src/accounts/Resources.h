#pragma once

#include <QString>

#include <optional>

/// A file that is installed with the program: in "share/pellar" beside the program's folder, or in the folder
/// "pellar" of the data folders, the user's own first.
std::optional<QString> resourcePath(const QString& name);

/// The text of a plain file of 1 MB at most, in UTF-8. None when it cannot be read.
std::optional<QString> readText(const QString& path);
