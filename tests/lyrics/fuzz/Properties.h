#pragma once

#include <QByteArray>

/// What has to hold for the lines of any input whatever.
namespace Properties {

bool holdForLrc(const QByteArray& input);
bool holdForTTML(const QByteArray& input);

} // namespace Properties
