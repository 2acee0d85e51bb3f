#include "base/NotificationCenter.h"

#include <QObject>

void NotificationCenter::observe(const QString& name, QObject* context, Handler handler)
{
    _observers[name].push_back({context, std::move(handler)});
}

void NotificationCenter::post(const QString& name, const QVariantMap& userInfo)
{
    const auto found = _observers.find(name);
    if (found == _observers.end()) {
        return;
    }
    std::erase_if(*found, [](const Observer& observer) { return observer.context.isNull(); });
    // A copy: a handler may register or drop observers.
    for (const auto observers = *found; const Observer& observer : observers) {
        if (!observer.context.isNull()) {
            observer.handler(userInfo);
        }
    }
}
