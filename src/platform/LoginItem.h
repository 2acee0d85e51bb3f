#pragma once

#include <QString>

#include <optional>

/// Whether the desktop starts this program when the user logs in.
class LoginItem
{
public:
    LoginItem() = default;
    virtual ~LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;

    /// As the desktop has it now, whoever has set it.
    virtual bool isEnabled() const = 0;

    /// Has the desktop start this very copy of the program from now on, or not. Gives the reason, for people,
    /// when that failed.
    virtual std::optional<QString> setEnabled(bool isEnabled) = 0;
};
