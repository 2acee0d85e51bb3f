#pragma once

#include "prefs/PellarTheme.h"

#include <QColor>
#include <QObject>
#include <QProperty>

class UserDefaults;

/// Which colour theme the pill has.
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

    /// The colour of the pill's accents; none for the neutral look.
    std::optional<QColor> tint() const { return _tint; }
    QBindable<std::optional<QColor>> bindableTint() const { return &_tint; }

Q_SIGNALS:
    void modeChanged();
    void tintChanged();

private:
    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY(ThemeManager, PellarTheme, _mode, &ThemeManager::modeChanged)
    Q_OBJECT_BINDABLE_PROPERTY(ThemeManager, std::optional<QColor>, _tint, &ThemeManager::tintChanged)
};
