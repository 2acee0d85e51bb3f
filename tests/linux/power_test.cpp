#include "linux/desktop/PowerProfiles.h"

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

    void announce(const QVariantMap& values, const QStringList& invalidated)
    {
        auto signal = QDBusMessage::createSignal(_path, properties, QStringLiteral("PropertiesChanged"));
        signal << _name << values << invalidated;
        _bus.send(signal);
    }
    void change(const QVariant& value)
    {
        profile = value;
        announce({{activeProfile, value}}, {});
    }
    void invalidate(const QVariant& value)
    {
        profile = value;
        announce({}, {activeProfile});
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        const QVariantList expected = {_name, activeProfile};
        if (message.arguments() != expected || !profile.isValid()) {
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
    void oddAnswers();
    void bothNamesAtOnce();
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
    int changes = 0;
    connect(&power, &PowerState::changed, this, [&] { ++changes; });
    const auto becomes = [&](bool isLowPower) {
        const int before = changes;
        return QTest::qWaitFor([&] { return changes > before; }) && changes == before + 1 &&
               power.isLowPowerModeEnabled() == isLowPower;
    };
    daemon.profile = saver;
    QVERIFY(daemon.appear());
    QVERIFY(!power.isLowPowerModeEnabled());
    QVERIFY(becomes(true));
    daemon.change(QStringLiteral("performance"));
    QVERIFY(becomes(false));
    daemon.invalidate(saver);
    QVERIFY(becomes(true));
    QVERIFY(daemon.disappear());
    QVERIFY(becomes(false));
    QVERIFY(daemon.appear());
    QVERIFY(becomes(true));
    const PowerProfiles latecomer(QDBusConnection::sessionBus());
    QTRY_VERIFY(latecomer.isLowPowerModeEnabled());
}

void PowerTest::oddAnswers()
{
    Daemon daemon(olderName);
    PowerProfiles power(QDBusConnection::sessionBus());
    daemon.profile = saver;
    QVERIFY(daemon.appear());
    for (const QVariant& odd :
         {QVariant(QStringLiteral("Power-Saver")), QVariant(QStringList{saver}), QVariant()}) {
        QTRY_VERIFY(power.isLowPowerModeEnabled());
        if (odd.typeId() != QMetaType::QString) { // nothing is answered with an error
            QTest::ignoreMessage(QtWarningMsg,
                                 QRegularExpression(QStringLiteral("net.hadess.PowerProfiles")));
        }
        daemon.invalidate(odd);
        QTRY_VERIFY(!power.isLowPowerModeEnabled());
        daemon.change(saver);
    }
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
}

QTEST_GUILESS_MAIN(PowerTest)
#include "power_test.moc"
