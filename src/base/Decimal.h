#pragma once

#include <QString>

#include <optional>

/// Reads a whole text as a decimal integer of 64 bits, with or without a sign. None for anything else, such
/// as white space around it or a number out of range.
std::optional<qint64> readInteger(QStringView text);

/// Reads a whole text as a finite decimal number with "." as the separator, whatever the locale. None for
/// anything else: an empty text, leading or trailing white space, a number out of range, words such as "nan".
std::optional<double> readDecimal(QStringView text);

/// As `readDecimal`; zero for what is no number.
double parseDecimal(const QString& text);

/// The shortest text that reads back as the same number, always with a fraction: "42.5", "90.0". From 1e16
/// on, and below 1e-4, it is written with an exponent: "1.0e+20".
QString decimalText(double value);

/// A truth value as the logs write it: "true" or "false".
QString boolText(bool value);
