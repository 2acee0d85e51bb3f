#pragma once

#include <QObject>

/// The desktop's choice between light and dark.
class Appearance : public QObject
{
    Q_OBJECT

public:
    virtual bool isDark() const = 0;

Q_SIGNALS:
    void changed();
};
