#pragma once

#include <QObject>

/// What the page can reach of this program: it posts messages, and nothing else.
class PageMessages : public QObject
{
    Q_OBJECT

public:
    /// A message, JSON, to the handler of this name.
    Q_INVOKABLE void post(const QString& handler, const QString& body) { Q_EMIT posted(handler, body); }

Q_SIGNALS:
    void posted(const QString& handler, const QString& body);
};
