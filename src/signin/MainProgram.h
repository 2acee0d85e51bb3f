#pragma once

#include <QJsonObject>
#include <QObject>
#include <QSocketNotifier>

/// The program that has started this one. It sends lines of JSON on the standard input, and gets such lines
/// on the standard output.
class MainProgram : public QObject
{
    Q_OBJECT

public:
    MainProgram();

    void tell(const QString& event, const QJsonObject& more = {});

Q_SIGNALS:
    void received(const QJsonObject& message);

    /// The input has ended: the main program wants this one to end, or has itself.
    void ended();

private:
    void read();

    QSocketNotifier _input;
    QByteArray _received;
};
