#include "platform/linux/PowerProfiles.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QTest>

namespace {

const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString activeProfile = QStringLiteral("ActiveProfile");
const QString saver = QStringLiteral("power-saver");
const QString balanced = QStringLiteral("balanced");

/// A power-profiles daemon on a bus connection of its own. It answers from the thread of the test, so a
/// client that waited for it would never be answered.
class Daemon final : public QDBusVirtualObject
{
public:
    explicit Daemon(const QString& name)
        : _name(name)
        , _path(QLatin1Char('/') + QString(name).replace(QLatin1Char('.'), QLatin1Char('/')))
        , _bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, name))
    {
        _bus.registerVirtualObject(_path, this);
    }
    ~Daemon() override { QDBusConnection::disconnectFromBus(_name); }
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

    bool appear() { return _bus.registerService(_name); }
    bool disappear() { return _bus.unregisterService(_name); }

    void announce(const QString& interface, const QVariantMap& values, const QStringList& invalidated = {})
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(_path, properties, QStringLiteral("PropertiesChanged"));
        signal << interface << values << invalidated;
        _bus.send(signal);
    }
    void change(const QVariant& value)
    {
        profile = value;
        announce(_name, {{activeProfile, value}});
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        const QVariantList expected = {_name, activeProfile};
        if (message.member() != QStringLiteral("Get") || message.arguments() != expected ||
            !profile.isValid()) {
            return false;
        }
        ++answers;
        return bus.send(message.createReply(QVariant::fromValue(QDBusVariant(profile))));
    }
    QString introspect(const QString&) const override { return {}; }

    QVariant profile = balanced;
    int answers = 0;

private:
    QString _name;
    QString _path;
    QDBusConnection _bus;
};

const QString todaysName = QStringLiteral("org.freedesktop.UPower.PowerProfiles");
const QString olderName = QStringLiteral("net.hadess.PowerProfiles");

} // namespace

class PowerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }
    void followsTheDaemon_data();
    void followsTheDaemon();
    void oddAnswers_data();
    void oddAnswers();
    void bothNamesAtOnce();
    void othersAreNotHeard();
    void noBus();
};

void PowerTest::followsTheDaemon_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("today") << todaysName;
    QTest::newRow("older") << olderName;
}

void PowerTest::followsTheDaemon()
{
    QFETCH(QString, name);
    Daemon daemon(name);
    PowerProfiles power(QDBusConnection::sessionBus());
    const QSignalSpy changes(&power, &PowerState::changed);

    daemon.profile = saver;
    QVERIFY(daemon.appear());
    QVERIFY(!power.isLowPowerModeEnabled());
    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(power.isLowPowerModeEnabled());

    daemon.change(QStringLiteral("performance"));
    QTRY_COMPARE(changes.count(), 2);
    QVERIFY(!power.isLowPowerModeEnabled());

    daemon.profile = saver;
    daemon.announce(name, {}, {activeProfile});
    QTRY_COMPARE(changes.count(), 3);
    QVERIFY(power.isLowPowerModeEnabled());

    QVERIFY(daemon.disappear());
    QTRY_COMPARE(changes.count(), 4);
    QVERIFY(!power.isLowPowerModeEnabled());

    QVERIFY(daemon.appear());
    QTRY_COMPARE(changes.count(), 5);
    const PowerProfiles latecomer(QDBusConnection::sessionBus());
    QTRY_VERIFY(latecomer.isLowPowerModeEnabled());
}

void PowerTest::oddAnswers_data()
{
    QTest::addColumn<QVariant>("profile");
    QTest::addColumn<bool>("isLogged");

    QTest::newRow("unknown profile") << QVariant(QStringLiteral("Power-Saver")) << false;
    QTest::newRow("number") << QVariant(1) << true;
    QTest::newRow("truth value") << QVariant(true) << true;
    QTest::newRow("list") << QVariant(QStringList{saver}) << true;
    QTest::newRow("an error") << QVariant() << true;
}

void PowerTest::oddAnswers()
{
    QFETCH(QVariant, profile);
    QFETCH(bool, isLogged);
    Daemon daemon(olderName);
    PowerProfiles power(QDBusConnection::sessionBus());
    const QSignalSpy changes(&power, &PowerState::changed);
    daemon.profile = saver;
    QVERIFY(daemon.appear());
    QTRY_VERIFY(power.isLowPowerModeEnabled());

    if (isLogged) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("net.hadess.PowerProfiles")));
    }
    daemon.profile = profile;
    daemon.announce(olderName, {}, {activeProfile});
    QTRY_COMPARE(changes.count(), 2);
    QVERIFY(!power.isLowPowerModeEnabled());
    daemon.change(saver);
    QTRY_COMPARE(changes.count(), 3);
}

void PowerTest::bothNamesAtOnce()
{
    Daemon today(todaysName);
    Daemon older(olderName);
    today.profile = older.profile = saver;
    QVERIFY(today.appear() && older.appear());
    PowerProfiles power(QDBusConnection::sessionBus());
    const QSignalSpy changes(&power, &PowerState::changed);
    QTRY_COMPARE(today.answers + older.answers, 2);
    QTRY_VERIFY(power.isLowPowerModeEnabled());

    // One name after the other, on and off: only the answer as a whole counts.
    today.change(balanced);
    older.change(balanced);
    QTRY_VERIFY(!power.isLowPowerModeEnabled());
    QCOMPARE(changes.count(), 2);
    older.change(saver);
    QTRY_VERIFY(power.isLowPowerModeEnabled());
    QCOMPARE(changes.count(), 3);
}

void PowerTest::othersAreNotHeard()
{
    Daemon daemon(todaysName);
    QVERIFY(daemon.appear());
    PowerProfiles power(QDBusConnection::sessionBus());
    const QSignalSpy changes(&power, &PowerState::changed);
    QTRY_COMPARE(daemon.answers, 1);

    daemon.announce(olderName, {{activeProfile, saver}});
    auto stranger = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("stranger"));
    QDBusMessage claim = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/UPower/PowerProfiles"),
                                                    properties, QStringLiteral("PropertiesChanged"));
    claim << todaysName << QVariantMap{{activeProfile, saver}} << QStringList();
    stranger.send(claim);
    // When this question of the stranger is answered, the bus has passed its claim on.
    stranger.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/"),
                                                 QStringLiteral("org.freedesktop.DBus.Peer"),
                                                 QStringLiteral("Ping")));
    daemon.profile = balanced;
    daemon.announce(todaysName, {}, {activeProfile});
    QTRY_COMPARE(daemon.answers, 2);
    QCOMPARE(changes.count(), 0);
    QDBusConnection::disconnectFromBus(QStringLiteral("stranger"));
}

void PowerTest::noBus()
{
    const PowerProfiles power(QDBusConnection(QStringLiteral("no such connection")));
    QCoreApplication::processEvents();
    QVERIFY(!power.isLowPowerModeEnabled());
}

QTEST_GUILESS_MAIN(PowerTest)
#include "power_test.moc"
