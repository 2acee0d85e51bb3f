#pragma once

#include "linux/dbus/BusName.h"
#include "platform/HotKeys.h"

#include <PortalShortcutsProxy.h>
#include <QDBusMessage>
#include <QMap>

#include <memory>

/// Hot keys by leave of the desktop's portal, for Wayland, where no program may take keys itself. The portal
/// asks the user, who may pick other chords there; so what is `registered` is reached by some chord, wished
/// for or not. Without a portal, or one that knows no hot keys, they are unavailable.
class PortalHotKeys final : public HotKeys
{
    Q_OBJECT

public:
    PortalHotKeys();

    /// The same hot keys again change nothing, so that the user is not asked again.
    void apply(const QList<HotKey>& hotKeys) override;
    State state(quint32 id) const override { return _states.value(id, State::unavailable); }
    std::optional<KeyDown> keyDown(const QKeyEvent& event) const override;

private Q_SLOTS:
    void sessionCreated(uint code, const QVariantMap& results, const QDBusMessage& answer);
    void shortcutsBound(uint code, const QVariantMap& results, const QDBusMessage& answer);
    void activated(const QDBusMessage& signal);

private:
    void setPortal(const QString& owner);
    void start();
    void closeSession();
    QString expectAnswer(const char* slot);
    void expectNoAnswer();
    void listen(const QDBusPendingReply<QDBusObjectPath>& call);
    void bindShortcuts();
    void setStates(State state);
    void fail(const QString& why);

    BusName _portalName;
    std::unique_ptr<PortalShortcutsProxy> _portal; ///< null while there is none
    QList<HotKey> _wanted;
    QMap<quint32, State> _states;
    QString _session;              ///< the session's path; empty while there is none
    QString _request;              ///< the path of the question that is open; empty while none is
    const char* _answer = nullptr; ///< the slot for its answer
    int _requests = 0;
};
