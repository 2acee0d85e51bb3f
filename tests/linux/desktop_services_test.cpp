#include "base/EventLoop.h"
#include "linux/desktop/DesktopAppearance.h"
#include "linux/desktop/PortalHotKeys.h"
#include "linux/desktop/PowerProfiles.h"
#include "support/BusStandIn.h"

#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>
#include <QtTest>

namespace {

const QString noObject = u"org.freedesktop.DBus.Error.UnknownObject"_s;
const QString activeProfile = u"ActiveProfile"_s;
const QString saver = u"power-saver"_s;
const QString todaysName = u"org.freedesktop.UPower.PowerProfiles"_s;
const QString olderName = u"net.hadess.PowerProfiles"_s;

/// A power-profiles daemon.
class Daemon final : public BusStandIn
{
public:
    explicit Daemon(const QString& itsName)
        : BusStandIn(u'/' + QString(itsName).replace(u'.', u'/'))
        , name(itsName)
    {
    }

    void change(const QVariant& profile)
    {
        set({{activeProfile, profile}});
        announce(name, {{activeProfile, profile}});
    }
    void invalidate(const QVariant& profile)
    {
        set({{activeProfile, profile}});
        announce(name, {}, {activeProfile});
    }

    const QString name;
};

/// The settings part of a desktop portal.
class Portal final : public BusStandIn
{
public:
    Portal() : BusStandIn(u"/org/freedesktop/portal/desktop"_s) {}

    void change(const QVariant& scheme, const QString& key = u"color-scheme"_s)
    {
        emitSignal(u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
                   {u"org.freedesktop.appearance"_s, key, QVariant::fromValue(QDBusVariant(scheme))});
    }

    QVariantList bound; ///< what was asked for last
    QString session;    ///< empty while there is none

protected:
    std::optional<QVariantList> perform(const QDBusMessage& call) override
    {
        if (call.interface().endsWith(u"GlobalShortcuts"_s)) {
            return shortcuts(call);
        }
        // The value comes in two wrappings.
        const auto inner = QVariant::fromValue(QDBusVariant(1U));
        return QVariantList{QVariant::fromValue(QDBusVariant(inner))};
    }

private:
    /// Gives the first shortcut that is asked for, and no other.
    QVariantList shortcuts(const QDBusMessage& call)
    {
        const auto options = qdbus_cast<QVariantMap>(call.arguments().constLast());
        const QString request = u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(
            call.service().mid(1).replace(u'.', u'_'), options.value(u"handle_token"_s).toString());
        QVariantMap results;
        if (call.member() == u"CreateSession") {
            session = u"/session/1"_s;
            results[u"session_handle"_s] = session;
        } else {
            bound = call.arguments();
            results[u"shortcuts"_s] = bound.value(1);
        }
        emitSignal(u"org.freedesktop.portal.Request"_s, u"Response"_s, {0U, results}, request);
        return {QVariant::fromValue(QDBusObjectPath(request))};
    }
};

} // namespace

/// The small services of a desktop that are followed over the bus.
class DesktopServicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void followsPowerProfiles()
    {
        for (const QString& name : {todaysName, olderName}) {
            Daemon daemon(name);
            const PowerProfiles power(QDBusConnection::sessionBus(), _runLoop);
            const QSignalSpy changes(&power, &PowerState::changed);
            daemon.set({{activeProfile, saver}});
            daemon.failures[u"*"_s] = noObject; // for a moment
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name));
            QVERIFY(daemon.own(name));
            QTRY_VERIFY(daemon.failed > 1);
            daemon.failures.clear();
            QVERIFY(!power.isLowPowerModeEnabled());
            QTRY_VERIFY(power.isLowPowerModeEnabled());
            daemon.change(u"performance"_s);
            QTRY_VERIFY(!power.isLowPowerModeEnabled());
            daemon.invalidate(saver);
            QTRY_VERIFY(power.isLowPowerModeEnabled());
            QVERIFY(daemon.disown(name));
            QTRY_VERIFY(!power.isLowPowerModeEnabled());
            QVERIFY(daemon.own(name));
            QTRY_VERIFY(power.isLowPowerModeEnabled());
            QCOMPARE(changes.count(), 5);
            const PowerProfiles latecomer(QDBusConnection::sessionBus(), _runLoop);
            QTRY_VERIFY(latecomer.isLowPowerModeEnabled());

            for (const QVariant& odd :
                 {QVariant(u"Power-Saver"_s), QVariant(QStringList{saver}), QVariant()}) {
                if (odd.typeId() != QMetaType::QString) { // nothing is answered with an error
                    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name));
                    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name)); // the latecomer's
                }
                daemon.invalidate(odd);
                QTRY_VERIFY(!power.isLowPowerModeEnabled() && !latecomer.isLowPowerModeEnabled());
                daemon.change(saver);
                QTRY_VERIFY(power.isLowPowerModeEnabled() && latecomer.isLowPowerModeEnabled());
            }
        }
    }

    void bindsHotKeysByPortal()
    {
        PortalHotKeys keys;
        QSignalSpy pressed(&keys, &HotKeys::pressed);
        const HotKey play{.id = 1, .keyCode = 49, .modifiers = 0x300, .name = u"Play"_s, .action = u"play"_s};
        keys.apply({play});
        QCOMPARE(keys.state(1), HotKeys::State::unavailable);
        Portal portal;
        QVERIFY(portal.own(u"org.freedesktop.portal.Desktop"_s));
        QTRY_COMPARE(keys.state(1), HotKeys::State::registered);
        const auto list = portal.bound.value(1).value<QDBusArgument>();
        QString id;
        QVariantMap properties;
        list.beginArray();
        list.beginStructure();
        list >> id >> properties;
        list.endStructure();
        list.endArray();
        QCOMPARE(id, play.action);
        QCOMPARE(properties, (QVariantMap{{u"description"_s, u"Play"_s},
                                          {u"preferred_trigger"_s, u"SHIFT+LOGO+space"_s}}));

        for (const QString& session : {u"/session/2"_s, portal.session}) {
            portal.emitSignal(
                u"org.freedesktop.portal.GlobalShortcuts"_s, u"Activated"_s,
                {QVariant::fromValue(QDBusObjectPath(session)), play.action, qulonglong{1}, QVariantMap()});
        }
        QTRY_COMPARE(pressed.count(), 1);
        portal.bound.clear();
        keys.apply({play});
        QCOMPARE(keys.state(1), HotKeys::State::registered); // without another question
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"gives no hot keys"_s));
        portal.failures[u"CreateSession"_s] = noObject;
        keys.apply({{.id = 1, .keyCode = 50, .modifiers = 0x300, .name = u"Play"_s, .action = u"play"_s}});
        QTRY_COMPARE(keys.state(1), HotKeys::State::unavailable);
        QVERIFY(portal.bound.isEmpty());
    }

    void followsPaletteAndPortal()
    {
        const DesktopAppearance appearance(_runLoop);
        QGuiApplication::setPalette(QPalette(Qt::black));
        QVERIFY(appearance.isDark());
        QGuiApplication::setPalette(QPalette(Qt::white));
        QVERIFY(!appearance.isDark());
        const QSignalSpy changed(&appearance, &Appearance::changed);
        Portal portal; // comes later
        portal.failures[u"*"_s] = noObject;
        QVERIFY(portal.own(u"org.freedesktop.portal.Desktop"_s));
        QTRY_VERIFY(portal.failed > 1);
        portal.failures.clear();
        QTRY_VERIFY(appearance.isDark());
        portal.change(2U, u"contrast"_s); // another setting
        portal.change(2U);
        QTRY_VERIFY(!appearance.isDark());
        QCOMPARE(changed.count(), 2);
        portal.change(1U);
        QTRY_VERIFY(appearance.isDark());
        portal.change(u"violet"_s); // as good as no preference: the palette's turn
        QTRY_VERIFY(!appearance.isDark());
    }

private:
    EventLoop _runLoop;
};

QTEST_MAIN(DesktopServicesTest)
#include "desktop_services_test.moc"
