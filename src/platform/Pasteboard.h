#pragma once

#include <QString>

/// The general clipboard.
class Pasteboard
{
public:
    Pasteboard() = default;
    virtual ~Pasteboard() = default;
    Pasteboard(const Pasteboard&) = delete;
    Pasteboard& operator=(const Pasteboard&) = delete;

    /// Replaces whatever the clipboard holds by this plain text.
    virtual void setText(const QString& text) = 0;
};
