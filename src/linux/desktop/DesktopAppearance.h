#pragma once

#include "linux/dbus/BusName.h"
#include "platform/Appearance.h"

#include <PortalSettingsProxy.h>
#include <QVariant>

#include <memory>
#include <optional>

/// Light or dark as the desktop portal says; where it says nothing, as the palette looks.
class DesktopAppearance final : public Appearance
{
    Q_OBJECT

public:
    DesktopAppearance();

    bool isDark() const override;

private Q_SLOTS:
    void settingChanged(const QDBusMessage& signal);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setPortal(const QString& owner);
    void adopt(const QVariant& colourScheme);

    BusName _portalName;
    std::unique_ptr<PortalSettingsProxy> _portal; ///< null while there is none
    std::optional<bool> _portalIsDark;
};
