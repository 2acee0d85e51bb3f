#pragma once

#include "platform/Appearance.h"

#include <QVariant>

#include <optional>

class QDBusVariant;

/// Light or dark as the desktop portal says; where it says nothing, as the palette looks.
class DesktopAppearance final : public Appearance
{
    Q_OBJECT

public:
    DesktopAppearance();

    bool isDark() const override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void adopt(const QVariant& colourScheme);

    std::optional<bool> _portalIsDark;
};
