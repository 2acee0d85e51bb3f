#include "linux/desktop/PortalHotKeys.h"

#include "linux/dbus/DBusValue.h"
#include "linux/dbus/WhenAnswered.h"
#include "linux/x11/VirtualKeys.h"

#include <PortalSessionProxy.h>
#include <QDBusMetaType>
#include <QLoggingCategory>

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>

/// A hot key as the portal names it.
struct PortalShortcut {
    QString id;
    QVariantMap properties;

    friend QDBusArgument& operator<<(QDBusArgument& out, const PortalShortcut& shortcut)
    {
        out.beginStructure();
        out << shortcut.id << shortcut.properties;
        out.endStructure();
        return out;
    }
    friend const QDBusArgument& operator>>(const QDBusArgument& in, PortalShortcut& shortcut)
    {
        in.beginStructure();
        in >> shortcut.id >> shortcut.properties;
        in.endStructure();
        return in;
    }
};
Q_DECLARE_METATYPE(PortalShortcut)

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.keyboard", QtWarningMsg)

const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString responseName = QStringLiteral("Response");

/// "LOGO+SHIFT+space"; none for a code that no key has.
std::optional<QString> trigger(const HotKey& hotKey)
{
    constexpr std::array<std::pair<quint32, const char*>, 4> names = {{{HotKeyModifier::control, "CTRL"},
                                                                       {HotKeyModifier::option, "ALT"},
                                                                       {HotKeyModifier::shift, "SHIFT"},
                                                                       {HotKeyModifier::command, "LOGO"}}};
    const auto symbol = VirtualKeys::symbol(hotKey.keyCode);
    std::array<char, 64> name = {};
    if (!symbol || xkb_keysym_get_name(*symbol, name.data(), name.size()) <= 0) {
        return std::nullopt;
    }
    QStringList parts;
    for (const auto& [bit, text] : names) {
        if ((hotKey.modifiers & bit) != 0) {
            parts << QLatin1String(text);
        }
    }
    parts << QLatin1String(name.data());
    return parts.join(u'+');
}

bool isSame(const HotKey& a, const HotKey& b)
{
    return a.id == b.id && a.keyCode == b.keyCode && a.modifiers == b.modifiers;
}

} // namespace

PortalHotKeys::PortalHotKeys()
    : _portalName(QDBusConnection::sessionBus(), QStringLiteral("org.freedesktop.portal.Desktop"))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    QDBusConnection::sessionBus().connect(QString(), portalPath,
                                          QLatin1String(PortalShortcutsProxy::staticInterfaceName()),
                                          QStringLiteral("Activated"), this, SLOT(activated(QDBusMessage)));
    connect(&_portalName, &BusName::ownerChanged, this, &PortalHotKeys::setPortal);
    _portalName.start();
}

std::optional<KeyDown> PortalHotKeys::keyDown(const QKeyEvent& event) const
{
    return VirtualKeys::keyDown(event);
}

void PortalHotKeys::setPortal(const QString& owner)
{
    expectNoAnswer();
    _session.clear(); // it went with the portal
    _portal.reset();
    if (owner.isEmpty()) {
        setStates(State::unavailable);
        return;
    }
    _portal = std::make_unique<PortalShortcutsProxy>(owner, portalPath, QDBusConnection::sessionBus());
    start();
}

void PortalHotKeys::apply(const QList<HotKey>& hotKeys)
{
    if (std::equal(hotKeys.begin(), hotKeys.end(), _wanted.begin(), _wanted.end(), isSame)) {
        return;
    }
    closeSession();
    _wanted = hotKeys;
    _states.clear();
    start();
}

/// A session binds once; for other hot keys there has to be another one.
void PortalHotKeys::start()
{
    if (!_portal || _wanted.isEmpty()) {
        return;
    }
    setStates(State::pending);
    const QString token = expectAnswer(SLOT(sessionCreated(uint, QVariantMap, QDBusMessage)));
    listen(_portal->CreateSession(
        {{QStringLiteral("handle_token"), token}, {QStringLiteral("session_handle_token"), token}}));
}

/// Hears of it when a question cannot be asked at all.
void PortalHotKeys::listen(const QDBusPendingReply<QDBusObjectPath>& call)
{
    whenAnswered(call, _portal.get(),
                 [this, request = _request](const QDBusPendingReply<QDBusObjectPath>& reply) {
                     if (reply.isError() && request == _request) {
                         expectNoAnswer();
                         fail(reply.error().message());
                     }
                 });
}

/// Gives the token of a request that has yet to be made. Its answer may come before the call returns, at a
/// path that is known by then.
QString PortalHotKeys::expectAnswer(const char* slot)
{
    expectNoAnswer();
    QDBusConnection bus = QDBusConnection::sessionBus();
    QString token = QStringLiteral("pellar%1").arg(++_requests);
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    _request = portalPath + QStringLiteral("/request/%1/%2").arg(sender, token);
    _answer = slot;
    bus.connect(_portal->service(), _request, requestInterface, responseName, this, _answer);
    return token;
}

void PortalHotKeys::expectNoAnswer()
{
    if (!_request.isEmpty()) {
        QDBusConnection::sessionBus().disconnect(_portal->service(), _request, requestInterface, responseName,
                                                 this, _answer);
    }
    _request.clear();
}

void PortalHotKeys::sessionCreated(uint code, const QVariantMap& results, const QDBusMessage& answer)
{
    if (answer.path() != _request) {
        return; // of hot keys that are no longer wanted
    }
    expectNoAnswer();
    _session = results.value(QStringLiteral("session_handle")).toString();
    if (code != 0 || _session.isEmpty()) {
        _session.clear();
        fail(QStringLiteral("it opens no session (%1)").arg(code));
        return;
    }
    bindShortcuts();
}

void PortalHotKeys::bindShortcuts()
{
    if (!_portal) {
        return;
    }
    QList<PortalShortcut> shortcuts;
    for (const HotKey& each : std::as_const(_wanted)) {
        QVariantMap properties = {{QStringLiteral("description"), each.name}};
        if (const auto preferred = trigger(each)) {
            properties.insert(QStringLiteral("preferred_trigger"), *preferred);
        }
        shortcuts.append({each.action, properties});
    }
    const QString token = expectAnswer(SLOT(shortcutsBound(uint, QVariantMap, QDBusMessage)));
    listen(_portal->asyncCallWithArgumentList(QStringLiteral("BindShortcuts"),
                                              {QVariant::fromValue(QDBusObjectPath(_session)),
                                               QVariant::fromValue(shortcuts), QString(),
                                               QVariantMap{{QStringLiteral("handle_token"), token}}}));
}

void PortalHotKeys::shortcutsBound(uint code, const QVariantMap& results, const QDBusMessage& answer)
{
    if (answer.path() != _request) {
        return;
    }
    expectNoAnswer();
    const auto bound =
        DBusValue::list<QList<PortalShortcut>>(results.value(QStringLiteral("shortcuts")), "a(sa{sv})");
    if (code != 0 || !bound) {
        fail(QStringLiteral("it binds no shortcuts (%1)").arg(code));
        return;
    }
    for (const HotKey& each : std::as_const(_wanted)) {
        const bool isBound = std::any_of(bound->begin(), bound->end(), [&](const PortalShortcut& shortcut) {
            return shortcut.id == each.action;
        });
        _states.insert(each.id, isBound ? State::registered : State::unavailable);
    }
    Q_EMIT statesChanged();
}

void PortalHotKeys::activated(const QDBusMessage& signal)
{
    const QVariantList arguments = signal.arguments();
    if (_session.isEmpty() || arguments.value(0).value<QDBusObjectPath>().path() != _session) {
        return;
    }
    for (const HotKey& each : std::as_const(_wanted)) {
        if (each.action == arguments.value(1).toString()) {
            Q_EMIT pressed(each.id);
        }
    }
}

void PortalHotKeys::closeSession()
{
    if (_portal && !_session.isEmpty()) {
        PortalSessionProxy(_portal->service(), _session, QDBusConnection::sessionBus()).Close();
    }
    _session.clear();
    expectNoAnswer();
}

void PortalHotKeys::setStates(State state)
{
    for (const HotKey& each : std::as_const(_wanted)) {
        _states.insert(each.id, state);
    }
    Q_EMIT statesChanged();
}

void PortalHotKeys::fail(const QString& why)
{
    qCWarning(log).noquote() << "the desktop's portal gives no hot keys:" << why;
    setStates(State::unavailable);
}
