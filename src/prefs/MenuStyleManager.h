#pragma once

#include "prefs/PellarMenuStyle.h"
#include "prefs/Preference.h"

#include <QObject>

/// Which style the context menu has. The glass panel is opt-in.
class MenuStyleManager : public QObject
{
    Q_OBJECT

public:
    explicit MenuStyleManager(UserDefaults& defaults);
    static MenuStyleManager& shared();

    Preference<PellarMenuStyle> style;
};
