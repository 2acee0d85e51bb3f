#pragma once

#include <QObject>

/// As long as it lives, the keys that are pressed come to this program's menus and panels.
class KeyboardClaim : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    /// The user has turned to another program.
    void lost();
};
