#pragma once

#include <QString>

/// Reads a whole text as a decimal number with "." as the separator, whatever the locale. Zero for anything
/// else: an empty text, leading or trailing white space, a number out of range, words such as "nan".
double parseDecimal(const QString& text);

/// The shortest text that reads back as the same number, always with a fraction: "42.5", "90.0". From 1e16
/// on, and below 1e-4, it is written with an exponent: "1.0e+20".
QString decimalText(double value);

/// A truth value as the logs write it: "true" or "false".
QString boolText(bool value);
