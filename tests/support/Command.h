#pragma once

#include <QString>
#include <QStringList>

/// Runs a program to its end and gives what it printed, trimmed; "?" if it failed. One that is not done after
/// the limit, in milliseconds, is ended and has failed. Meanwhile the test goes on answering: what is run may
/// ask it.
QString output(const QString& program, const QStringList& arguments, int limit = 10'000);

/// The same for a command line: "xdotool click 1".
QString run(const QString& commandLine);
