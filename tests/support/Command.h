#pragma once

#include <QString>
#include <QStringList>

/// Runs a program to its end (10 s at the most) and gives what it printed, trimmed; "?" if it failed.
QString output(const QString& program, const QStringList& arguments);
