#pragma once

#include <QProcess>

/// Another program, ended with its owner.
class Program : public QProcess
{
public:
    Program() = default;
    explicit Program(const QString& name, const QStringList& arguments = {}) { start(name, arguments); }
    ~Program() override
    {
        kill();
        waitForFinished();
    }
};
