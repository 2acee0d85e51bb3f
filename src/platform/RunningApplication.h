#pragma once

#include <QString>

#include <optional>

/// A program with a user interface.
struct RunningApplication {
    qint64 processId = 0; ///< 0 when it cannot be told
    std::optional<QString> bundleId;
};
