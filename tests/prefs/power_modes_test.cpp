#include "platform/PowerState.h"
#include "prefs/PowerModeManager.h"
#include "support/MemoryDefaults.h"

#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

namespace {

class Switch final : public PowerState
{
public:
    bool isLowPowerModeEnabled() const override { return isOn; }
    void set(bool on)
    {
        isOn = on;
        Q_EMIT changed();
    }
    bool isOn = false;
};

const QString manualModeKey = QStringLiteral("com.orvalen.pellar.power.manualMode");
const QString settingsKey = QStringLiteral("com.orvalen.pellar.power.settings.v1");
const PowerModeTable factory = {{QStringLiteral("lowPower"), {false, 0, 30}},
                                {QStringLiteral("normal"), {true, 15, 10}},
                                {QStringLiteral("powerUser"), {true, 30, 5}}};

QByteArray entry(const char* id, const char* enabled, const char* rate, const char* refresh)
{
    return QStringLiteral(R"({"%1":{"visualizerEnabled":%2,"visualizerFPS":%3,"driftRefreshSeconds":%4}})")
        .arg(QLatin1String(id), QLatin1String(enabled), QLatin1String(rate), QLatin1String(refresh))
        .toLatin1();
}

} // namespace

class PowerModesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedSettings_data();
    void storedSettings();
    void storedMode();
    void theSystemOverrules();
    void edits();
};

void PowerModesTest::storedSettings_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<PowerModeTable>("settings");
    QTest::addColumn<bool>("isDamaged");
    const auto good = [](const char* name, const QVariant& stored, const PowerModeTable& read = {}) {
        PowerModeTable table = factory;
        table.insert(read);
        QTest::newRow(name) << stored << table << false;
    };
    good("no data", QStringLiteral("{}"));
    good("empty object", QByteArray("{}"));
    good("one mode", entry("normal", "false", "24", "7"), {{QStringLiteral("normal"), {false, 24, 7}}});
    good("unknown mode", entry("turbo", "true", "120", "1"), {{QStringLiteral("turbo"), {true, 120, 1}}});
    good("negative and extreme", entry("normal", "true", "-2147483648", "2147483647"),
         {{QStringLiteral("normal"), {true, INT_MIN, INT_MAX}}});
    const auto damaged = [](const char* name, const QByteArray& json) {
        QTest::newRow(name) << QVariant(json) << factory << true;
    };
    damaged("nothing", "");
    damaged("cut short", entry("normal", "true", "24", "10").chopped(1));
    damaged("a list", "[" + entry("normal", "true", "24", "10") + "]");
    damaged("number for a truth value", entry("normal", "1", "24", "10"));
    damaged("fraction", entry("normal", "true", "15.5", "10"));
    damaged("text for a number", entry("normal", "true", "\"24\"", "10"));
    damaged("beyond int", entry("normal", "true", "24", "2147483648"));
    damaged("field missing", R"({"normal":{"visualizerEnabled":true,"visualizerFPS":24}})");
    damaged("damage in an unknown mode", entry("turbo", "true", "null", "1"));
}

void PowerModesTest::storedSettings()
{
    QFETCH(QVariant, stored);
    QFETCH(PowerModeTable, settings);
    QFETCH(bool, isDamaged);
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    if (isDamaged) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
    }
    MemoryDefaults defaults;
    defaults.values.insert(settingsKey, stored);
    Switch power;
    PowerModeManager manager(defaults, power);
    QCOMPARE(manager.settings(), settings);
    QCOMPARE(defaults.object(settingsKey), stored);

    manager.updateSettings(PowerMode::powerUser, [](PowerModeSettings& mode) { mode.visualizerFPS = 60; });
    settings[QStringLiteral("powerUser")].visualizerFPS = 60;
    QCOMPARE(PowerModeManager(defaults, power).settings(), settings);
}

void PowerModesTest::storedMode()
{
    Switch power;
    const auto modeFor = [&power](const QVariant& stored) {
        MemoryDefaults defaults;
        defaults.values.insert(manualModeKey, stored);
        return displayName(PowerModeManager(defaults, power).manualMode());
    };
    QCOMPARE(modeFor(QVariant()), QStringLiteral("Normal"));
    QCOMPARE(modeFor(QStringLiteral("lowPower")), QStringLiteral("Low Power"));
    QCOMPARE(modeFor(QStringLiteral("powerUser")), QStringLiteral("Power User"));
    QCOMPARE(modeFor(QStringLiteral("Power User")), QStringLiteral("Normal"));
    QCOMPARE(modeFor(QByteArray("powerUser")), QStringLiteral("Normal"));
}

void PowerModesTest::theSystemOverrules()
{
    MemoryDefaults defaults;
    Switch power;
    power.isOn = true;
    PowerModeManager manager(defaults, power);
    manager.setManualMode(PowerMode::powerUser);
    QCOMPARE(manager.effectiveMode(), PowerMode::lowPower);
    QVERIFY(manager.systemLowPowerEnabled() && !manager.audioCaptureAllowed());
    QCOMPARE(defaults.string(manualModeKey), std::optional(QStringLiteral("powerUser")));

    const QSignalSpy changes(&manager, &PowerModeManager::systemLowPowerEnabledChanged);
    power.set(false);
    power.set(false);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(manager.effectiveSettings(), (PowerModeSettings{true, 30, 5}));
    QVERIFY(manager.audioCaptureAllowed());
}

void PowerModesTest::edits()
{
    MemoryDefaults defaults;
    Switch power;
    PowerModeManager manager(defaults, power);
    const QSignalSpy changes(&manager, &PowerModeManager::settingsChanged);
    manager.updateSettings(PowerMode::lowPower, [](PowerModeSettings& mode) { mode.visualizerFPS = 1; });
    QCOMPARE(changes.count(), 1);
    QCOMPARE(manager.effectiveSettings(), (PowerModeSettings{true, 15, 10}));
    power.set(true);
    QCOMPARE(manager.effectiveSettings(), (PowerModeSettings{false, 1, 30}));
    const QJsonDocument expected = QJsonDocument::fromJson(R"({
        "lowPower": {"visualizerEnabled": false, "visualizerFPS": 1, "driftRefreshSeconds": 30},
        "normal": {"visualizerEnabled": true, "visualizerFPS": 15, "driftRefreshSeconds": 10},
        "powerUser": {"visualizerEnabled": true, "visualizerFPS": 30, "driftRefreshSeconds": 5}})");
    QCOMPARE(QJsonDocument::fromJson(defaults.data(settingsKey).value()), expected);
    manager.resetToDefaults(PowerMode::lowPower);
    QCOMPARE(PowerModeManager(defaults, power).settings(), factory);
}

QTEST_GUILESS_MAIN(PowerModesTest)
#include "power_modes_test.moc"
