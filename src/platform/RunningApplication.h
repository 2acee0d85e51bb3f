#pragma once

#include <QString>

#include <optional>

/// A program with a user interface.
struct RunningApplication {
    std::optional<qint64> processId;
    std::optional<QString> bundleId;
};
