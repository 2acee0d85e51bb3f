#pragma once

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <iterator>
#include <optional>

/// One case of an enumeration that people choose from.
template<typename Case>
struct Choice {
    Case value;
    const char* rawValue; ///< the form in which the case is stored
    const char* displayName;
};

/// The choices of an enumeration, `all` of them in the order in which they are listed. Specialised beside
/// each.
template<typename Case>
struct Choices;

template<typename Case>
const Choice<Case>& choice(Case value)
{
    return *std::find_if(std::begin(Choices<Case>::all), std::end(Choices<Case>::all),
                         [value](const Choice<Case>& each) { return each.value == value; });
}

template<typename Case>
QString rawValue(Case value)
{
    return QLatin1String(choice(value).rawValue);
}

/// In the language of the program.
template<typename Case>
QString displayName(Case value)
{
    return QCoreApplication::translate("Choice", choice(value).displayName);
}

/// The case that is stored as this text; none for any other text.
template<typename Case>
std::optional<Case> withRawValue(const QString& text)
{
    for (const Choice<Case>& each : Choices<Case>::all) {
        if (text == QLatin1String(each.rawValue)) {
            return each.value;
        }
    }
    return std::nullopt;
}
