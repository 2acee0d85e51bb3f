#pragma once

#include <QLoggingCategory>

/// Tells what goes wrong with the sound server; what is usual there only when it is switched on.
Q_DECLARE_LOGGING_CATEGORY(pipewireLog)
