#pragma once

#include <QString>

/// Compares two versions as update feeds mean them: "1.10" is above "1.9", "1.0" is the same as "1", and what
/// ends in letters, such as "2.0b1" or "2.0-rc", is below "2.0". Below 0 when `a` is the older one, 0 when
/// they are the same, above 0 when it is the newer one.
int compareVersions(const QString& a, const QString& b);
