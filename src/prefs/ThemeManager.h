#pragma once

#include "prefs/PellarTheme.h"

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

Q_SIGNALS:
    void modeChanged();

private:
    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY(ThemeManager, PellarTheme, _mode, &ThemeManager::modeChanged)
};
