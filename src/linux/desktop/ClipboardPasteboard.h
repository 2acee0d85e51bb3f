#pragma once

#include "platform/Pasteboard.h"

/// The desktop's clipboard.
class ClipboardPasteboard final : public Pasteboard
{
public:
    void setText(const QString& text) override;
};
