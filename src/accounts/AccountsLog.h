#pragma once

#include <QString>

/// Writes a line to the debug log and to the system's, where it begins with "[Pellar] ".
void systemLog(const QString& message);

/// A text from a web page as it may stand in a log: addresses without query and fragment, and "…" in place of
/// what is as long and as random as a token.
QString withoutSecrets(const QString& text);
