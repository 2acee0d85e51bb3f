#pragma once

#include <QLoggingCategory>

/// Logs what goes wrong with the sound server; usual events are at debug level.
Q_DECLARE_LOGGING_CATEGORY(pipewireLog)
