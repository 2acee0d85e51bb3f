#pragma once

#include "support/BusStandIn.h"
#include "support/Command.h"

#include <QDBusMessage>

/// A desktop's tray, as far as programs notice it.
class TrayStandIn final : public BusStandIn
{
public:
    TrayStandIn() : BusStandIn(u"/StatusNotifierWatcher"_s)
    {
        set({{u"IsStatusNotifierHostRegistered"_s, true}});
        own(u"org.kde.StatusNotifierWatcher"_s);
    }

    QString introspect(const QString& /*path*/) const override
    {
        return u"<interface name=\"org.kde.StatusNotifierWatcher\">"
               "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/>"
               "</interface>"_s;
    }

    /// What the program answers that has put an icon here.
    QString ask(const QString& call) const
    {
        return run(u"dbus-send --print-reply --dest=%1 "_s.arg(item) + call);
    }
    QString toolTip() const
    {
        return ask(u"/StatusNotifierItem org.freedesktop.DBus.Properties.Get "
                   "string:org.kde.StatusNotifierItem string:ToolTip"_s);
    }
    QString menu() const
    {
        return ask(u"/MenuBar com.canonical.dbusmenu.GetLayout int32:0 int32:-1 array:string:"_s);
    }

    void tell(const QString& row, const char* event) const
    {
        ask(u"/MenuBar com.canonical.dbusmenu.Event int32:%1 string:%2 variant:int32:0 uint32:0"_s.arg(
            row, QString::fromLatin1(event)));
    }

    QString item; ///< the bus name of that program

protected:
    std::optional<QVariantList> perform(const QDBusMessage& registration) override
    {
        item = registration.service();
        return QVariantList();
    }
};
