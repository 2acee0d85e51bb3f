#pragma once

#include <QString>
#include <QStringList>

/// Runs a program to its end and gives what it printed, trimmed; "?" if it failed. One that is not done after
/// the limit, in milliseconds, is ended and has failed.
QString output(const QString& program, const QStringList& arguments, int limit = 10'000);

/// The same of the sound server's tool and of the screen's, with words that are parted by single spaces.
QString pactl(const QString& words);
QString xdotool(const QString& words);
