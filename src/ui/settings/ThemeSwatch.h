#pragma once

#include "ui/controls/PixelItem.h"

#include <QColor>
#include <QProperty>

/// A theme's colour as a disc: all colours for the theme that takes them from covers, and light and dark
/// halves for the one that has none.
class ThemeSwatch : public PixelItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor tint READ tint WRITE setTint NOTIFY changed)
    Q_PROPERTY(bool isRainbow READ isRainbow WRITE setRainbow NOTIFY changed)

public:
    explicit ThemeSwatch(QQuickItem* parent = nullptr);

    /// Transparent for none.
    QColor tint() const { return _tint; }
    void setTint(const QColor& tint) { _tint = tint; }
    bool isRainbow() const { return _isRainbow; }
    void setRainbow(bool isRainbow) { _isRainbow = isRainbow; }

Q_SIGNALS:
    void changed();

protected:
    void paint(QPainter& painter, QSize size, double scale) override;

private:
    Q_OBJECT_BINDABLE_PROPERTY(ThemeSwatch, QColor, _tint, &ThemeSwatch::changed)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(ThemeSwatch, bool, _isRainbow, false, &ThemeSwatch::changed)
};
