#pragma once

#include <QString>

/// The rows of the report, printed as they come: what was measured, the figure, what it should reach, and how
/// it compares.
namespace Table {

void begin();
void row(const QString& what, const QString& measured, const QString& reach, const QString& comparison = {});

} // namespace Table
