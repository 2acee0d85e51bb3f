#pragma once

#include <QHash>
#include <QPointer>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <vector>

class QObject;

/// Named broadcasts with an optional dictionary of user info. Observers are called at once, in the order in
/// which they registered, on the thread that posts.
class NotificationCenter
{
public:
    using Handler = std::function<void(const QVariantMap& userInfo)>;

    /// Calls `handler` for every `name` posted while `context` lives.
    void observe(const QString& name, QObject* context, Handler handler);
    void post(const QString& name, const QVariantMap& userInfo = {});

private:
    struct Observer {
        QPointer<QObject> context;
        Handler handler;
    };
    QHash<QString, std::vector<Observer>> _observers;
};
