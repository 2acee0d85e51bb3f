#pragma once

#include <QObject>
#include <QString>

/// What other starts of this program, and the desktop, ask of the one that runs.
class RemoteRequests : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    /// Somebody wants to see the program.
    void activated();

    /// Somebody wants it to do what an action of this name does ("play-pause"); any name.
    void actionRequested(const QString& action);
};
