#include "base/EventLoop.h"
#include "linux/desktop/DesktopAppearance.h"
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

protected:
    std::optional<QVariantList> perform(const QDBusMessage& /*read*/) override
    {
        // The value comes in two wrappings.
        const auto inner = QVariant::fromValue(QDBusVariant(1U));
        return QVariantList{QVariant::fromValue(QDBusVariant(inner))};
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
