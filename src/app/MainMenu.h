#pragma once

#include <QObject>

/// The keys of a main menu where windows have none: Ctrl+Q ends the program from any of its windows. Those of
/// editing are at home in the text fields themselves. A chord that is being recorded does not come here: the
/// filter that takes it is installed later, and so asked before.
class MainMenu : public QObject
{
    Q_OBJECT

public:
    /// Installs itself with the application.
    MainMenu();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
