#pragma once

#include "platform/LoginItem.h"

/// The login item as an XDG autostart entry, "com.orvalen.pellar.desktop". One that the user or the desktop
/// has switched off, that is for another desktop, or whose program is gone, starts nothing and reads as off.
class AutostartEntry final : public LoginItem
{
public:
    /// `program` is the path that the entry starts.
    explicit AutostartEntry(QString program) : _program(std::move(program)) {}

    bool isEnabled() const override;
    std::optional<QString> setEnabled(bool isEnabled) override;

private:
    QString _program;
};
