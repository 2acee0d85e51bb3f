#pragma once

#include "platform/Appearance.h"

#include <QDBusMessage>
#include <QVariant>

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
    void askPortal();
    void adopt(const QVariant& colourScheme);

    std::optional<bool> _portalIsDark;
};
