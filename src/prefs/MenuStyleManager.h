#pragma once

#include "prefs/PellarMenuStyle.h"

#include <QObject>
#include <QProperty>

class UserDefaults;

/// Which style the context menu has.
class MenuStyleManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(PellarMenuStyle style READ style WRITE setStyle NOTIFY styleChanged BINDABLE bindableStyle)

public:
    explicit MenuStyleManager(UserDefaults& defaults);
    static MenuStyleManager& shared();

    PellarMenuStyle style() const { return _style; }
    void setStyle(PellarMenuStyle style);
    QBindable<PellarMenuStyle> bindableStyle() const { return &_style; }

Q_SIGNALS:
    void styleChanged();

private:
    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY(MenuStyleManager, PellarMenuStyle, _style, &MenuStyleManager::styleChanged)
};
