#pragma once

#include "linux/dbus/Backoff.h"
#include "linux/dbus/BusName.h"
#include "platform/Appearance.h"

#include <PortalSettingsProxy.h>
#include <QVariant>

#include <memory>
#include <optional>

class RunLoop;

/// Light or dark as the desktop portal says; where it says nothing, as the palette looks.
class DesktopAppearance final : public Appearance
{
    Q_OBJECT

public:
    explicit DesktopAppearance(RunLoop& runLoop);

    bool isDark() const override;

private Q_SLOTS:
    void settingChanged(const QDBusMessage& signal);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setPortal(const QString& owner);
    void askPortal();
    void adopt(const QVariant& colourScheme);

    RunLoop& _runLoop;
    BusName _portalName;
    Backoff _backoff;
    std::unique_ptr<PortalSettingsProxy> _portal; ///< null while there is none
    std::optional<bool> _portalIsDark;
};
