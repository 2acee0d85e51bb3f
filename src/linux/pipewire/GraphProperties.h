#pragma once

#include "platform/AudioHardware.h"

#include <optional>

struct spa_dict;

/// What objects of the graph say of themselves. Anybody can put anything there.
namespace GraphProperties {

/// Empty when it is not there.
QString text(const spa_dict* properties, const char* key);

/// A whole number from 0 on, or nothing.
std::optional<quint32> number(const spa_dict* properties, const char* key);

struct Process {
    AudioObjectId id;
    QString bundleId; ///< may be empty
};

/// The process behind a client. One that plays through the server for PulseAudio clients is not that server.
std::optional<Process> process(const spa_dict* properties);

} // namespace GraphProperties
