#pragma once

#include "base/SerialQueue.h"
#include "prefs/PellarTheme.h"

#include <QImage>
#include <QObject>
#include <QProperty>

class UserDefaults;

/// Which colour theme the pill has, and the tint that comes of it: the theme's own, none, or one drawn from
/// the artwork on show.
class ThemeManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(PellarTheme mode READ mode WRITE setMode NOTIFY modeChanged BINDABLE bindableMode)

public:
    explicit ThemeManager(UserDefaults& defaults);
    static ThemeManager& shared();

    PellarTheme mode() const { return _mode; }
    void setMode(PellarTheme mode);
    QBindable<PellarTheme> bindableMode() const { return &_mode; }

    /// Opaque; none for the neutral look. A tint of artwork follows that as soon as it has been worked out.
    std::optional<QColor> tint() const { return _tint; }
    QBindable<std::optional<QColor>> bindableTint() const { return &_tint; }

    /// Takes the artwork on show; a null image for none.
    void updateArtwork(const QImage& artwork);

Q_SIGNALS:
    void modeChanged();
    void tintChanged();

private:
    void recomputeTint();
    void extractTint();

    UserDefaults& _defaults;
    QImage _artwork; ///< kept in every mode, for the change back to album art
    Q_OBJECT_BINDABLE_PROPERTY(ThemeManager, PellarTheme, _mode, &ThemeManager::modeChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ThemeManager, std::optional<QColor>, _tint, &ThemeManager::tintChanged)
    SerialQueue _extractionQueue{QStringLiteral("com.orvalen.pellar.theme.extract")};
};
