#pragma once

#include "platform/RemoteRequests.h"

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantMap>

/// This program on the session bus, "com.orvalen.pellar", as desktops start and call programs
/// (org.freedesktop.Application). It is there for as long as the object is.
class ApplicationService final : public RemoteRequests
{
    Q_OBJECT

public:
    static const QString busName;
    static const QString objectPath;
    static const QString interface;

    ApplicationService();
    ~ApplicationService() override;
};

/// Its interface on the bus.
class ApplicationAdaptor final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ApplicationService& service)
        : QDBusAbstractAdaptor(&service)
        , _service(service)
    {
    }

    // The methods' names are the bus's. The program opens no files; who asks it to wants to see it.
public Q_SLOTS:
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& addresses, const QVariantMap& platformData);
    void ActivateAction(const QString& action, const QVariantList& parameters,
                        const QVariantMap& platformData);

private:
    ApplicationService& _service;
};
