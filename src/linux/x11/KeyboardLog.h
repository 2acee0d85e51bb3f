#pragma once

#include <QLoggingCategory>

/// Logs what goes wrong with keys that are sent or heard.
Q_DECLARE_LOGGING_CATEGORY(keyboardLog)
