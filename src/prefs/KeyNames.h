#pragma once

#include <QString>

#include <optional>

/// What a virtual key code is called on a US keyboard: "A", "Space", "Left Arrow". None for a code without a
/// key.
std::optional<QString> keyName(quint32 keyCode);
