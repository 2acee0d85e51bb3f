#pragma once

#include <QString>

#include <optional>

/// Whether the system lets this program automate other applications.
class Automation
{
public:
    static constexpr int granted = 0;
    static constexpr int targetNotRunning = -600;
    static constexpr int refused = -1743;

    Automation() = default;
    virtual ~Automation() = default;
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

    /// Asks without prompting the user: `granted`, `targetNotRunning`, `refused` or another error number.
    /// None when the bundle identifier names nothing that could be automated.
    virtual std::optional<int> permission(const QString& bundleId) const = 0;

    /// Whether this program may send key events to others (accessibility trust).
    virtual bool isTrustedForAccessibility() const = 0;
};
