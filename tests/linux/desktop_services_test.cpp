#include "base/EventLoop.h"
#include "linux/desktop/DesktopAppearance.h"
#include "linux/desktop/PowerProfiles.h"
#include "support/BusStandIn.h"

#include <QDBusVariant>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString activeProfile = QStringLiteral("ActiveProfile");
const QString saver = QStringLiteral("power-saver");
const QString balanced = QStringLiteral("balanced");
const QString everything = QStringLiteral("*");
const QString noObject = QStringLiteral("org.freedesktop.DBus.Error.UnknownObject");
const QString todaysName = QStringLiteral("org.freedesktop.UPower.PowerProfiles");
const QString olderName = QStringLiteral("net.hadess.PowerProfiles");

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
    Portal() : BusStandIn(QStringLiteral("/org/freedesktop/portal/desktop")) {}

    void change(const QVariant& scheme, const QString& key = QStringLiteral("color-scheme"))
    {
        emitSignal(
            QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"),
            {QStringLiteral("org.freedesktop.appearance"), key, QVariant::fromValue(QDBusVariant(scheme))});
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
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }
    void followsPowerProfiles_data();
    void followsPowerProfiles();
    void bothNamesAtOnce();
    void followsPalette();
    void followsPortal();

private:
    EventLoop _runLoop;
};

void DesktopServicesTest::followsPowerProfiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("today") << todaysName;
    QTest::newRow("older") << olderName;
}

void DesktopServicesTest::followsPowerProfiles()
{
    QFETCH(QString, name);
    Daemon daemon(name);
    const PowerProfiles power(QDBusConnection::sessionBus(), _runLoop);
    const QSignalSpy changes(&power, &PowerState::changed);
    daemon.set({{activeProfile, saver}});
    daemon.failures[everything] = noObject; // for a moment
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(name));
    QVERIFY(daemon.own(name));
    QTRY_VERIFY(daemon.failed > 1);
    daemon.failures.clear();
    QVERIFY(!power.isLowPowerModeEnabled());
    QTRY_VERIFY(power.isLowPowerModeEnabled());
    daemon.change(QStringLiteral("performance"));
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
         {QVariant(QStringLiteral("Power-Saver")), QVariant(QStringList{saver}), QVariant()}) {
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

void DesktopServicesTest::bothNamesAtOnce()
{
    Daemon today(todaysName);
    Daemon older(olderName);
    for (Daemon* const daemon : {&today, &older}) {
        daemon->set({{activeProfile, saver}});
        QVERIFY(daemon->own(daemon->name));
    }
    const PowerProfiles power(QDBusConnection::sessionBus(), _runLoop);
    const QSignalSpy changes(&power, &PowerState::changed);
    QTRY_COMPARE(today.asked.size() + older.asked.size(), 2);
    QTRY_VERIFY(power.isLowPowerModeEnabled());
    // One name after the other, on and off: only the answer as a whole counts.
    today.change(balanced);
    older.change(balanced);
    QTRY_VERIFY(!power.isLowPowerModeEnabled());
    QCOMPARE(changes.count(), 2);
}

void DesktopServicesTest::followsPalette()
{
    const DesktopAppearance appearance(_runLoop);
    QGuiApplication::setPalette(QPalette(Qt::black));
    QVERIFY(appearance.isDark());
    QGuiApplication::setPalette(QPalette(Qt::white));
    QVERIFY(!appearance.isDark());
}

void DesktopServicesTest::followsPortal()
{
    const DesktopAppearance appearance(_runLoop);
    const QSignalSpy changed(&appearance, &Appearance::changed);
    Portal portal; // comes later
    portal.failures[everything] = noObject;
    QVERIFY(portal.own(QStringLiteral("org.freedesktop.portal.Desktop")));
    QTRY_VERIFY(portal.failed > 1);
    portal.failures.clear();
    QTRY_VERIFY(appearance.isDark());
    portal.change(2U, QStringLiteral("contrast")); // another setting
    portal.change(2U);
    QTRY_VERIFY(!appearance.isDark());
    QCOMPARE(changed.count(), 2);
    portal.change(1U);
    QTRY_VERIFY(appearance.isDark());
    portal.change(QStringLiteral("violet")); // as good as no preference: the palette's turn
    QTRY_VERIFY(!appearance.isDark());
}

QTEST_MAIN(DesktopServicesTest)
#include "desktop_services_test.moc"
