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

    const auto add = [](const char* name, const QByteArray& json, const PowerModeTable& stored) {
        PowerModeTable table = factory;
        table.insert(stored);
        QTest::newRow(name) << QVariant(json) << table << false;
    };
    const auto addDamaged = [](const char* name, const QByteArray& json) {
        QTest::newRow(name) << QVariant(json) << factory << true;
    };
    const auto entry = [](const QByteArray& id, const QByteArray& enabled, const QByteArray& rate,
                          const QByteArray& refresh) -> QByteArray {
        return "{\"" + id + R"(":{"visualizerEnabled":)" + enabled + R"(,"visualizerFPS":)" + rate +
               R"(,"driftRefreshSeconds":)" + refresh + "}}";
    };
    QTest::newRow("absent") << QVariant() << factory << false;
    QTest::newRow("no data") << QVariant(QStringLiteral("{}")) << factory << false;
    add("empty object", "{}", {});
    add("one mode", entry("normal", "false", "24", "7"), {{QStringLiteral("normal"), {false, 24, 7}}});
    add("unknown mode", entry("turbo", "true", "120", "1"), {{QStringLiteral("turbo"), {true, 120, 1}}});
    add("negative and extreme", entry("normal", "true", "-2147483648", "2147483647"),
        {{QStringLiteral("normal"), {true, INT_MIN, INT_MAX}}});
    add("other spellings of whole numbers", entry("normal", "true", "15.0", "1e1"), {});
    addDamaged("nothing", "");
    addDamaged("cut short", entry("normal", "true", "15", "10").chopped(1));
    addDamaged("a list", "[" + entry("normal", "true", "15", "10") + "]");
    addDamaged("number for a truth value", entry("normal", "1", "24", "10"));
    addDamaged("fraction", entry("normal", "true", "15.5", "10"));
    addDamaged("text for a number", entry("normal", "true", "\"15\"", "10"));
    addDamaged("null", entry("normal", "true", "15", "null"));
    addDamaged("beyond int", entry("normal", "true", "2147483648", "10"));
    addDamaged("field missing", R"({"normal":{"visualizerEnabled":true,"visualizerFPS":24}})");
    addDamaged("entry no object", R"({"normal":15})");
    addDamaged("damage in an unknown mode", entry("turbo", "true", "\"fast\"", "1"));
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
    if (stored.isValid()) {
        defaults.values.insert(settingsKey, stored);
    }
    Switch power;
    PowerModeManager manager(defaults, power);
    QCOMPARE(manager.settings(), settings);
    QCOMPARE(defaults.object(settingsKey), stored);

    manager.updateSettings(PowerMode::powerUser, [](PowerModeSettings& mode) { mode.visualizerFPS = 60; });
    PowerModeTable edited = settings;
    edited[QStringLiteral("powerUser")].visualizerFPS = 60;
    QCOMPARE(PowerModeManager(defaults, power).settings(), edited);
}

void PowerModesTest::storedMode()
{
    MemoryDefaults defaults;
    Switch power;
    const auto modeFor = [&](const QVariant& stored) {
        defaults.values = {{manualModeKey, stored}};
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
    QVERIFY(manager.systemLowPowerEnabled());
    QCOMPARE(manager.effectiveMode(), PowerMode::lowPower);
    QVERIFY(!manager.audioCaptureAllowed());
    QCOMPARE(defaults.string(manualModeKey), std::optional(QStringLiteral("powerUser")));

    const QSignalSpy changes(&manager, &PowerModeManager::systemLowPowerEnabledChanged);
    power.set(false);
    power.set(false);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(manager.effectiveMode(), PowerMode::powerUser);
    QCOMPARE(manager.effectiveSettings(), (PowerModeSettings{true, 30, 5}));
    QCOMPARE(PowerModeManager(defaults, power).manualMode(), PowerMode::powerUser);
}

void PowerModesTest::edits()
{
    MemoryDefaults defaults;
    Switch power;
    PowerModeManager manager(defaults, power);
    const QSignalSpy changes(&manager, &PowerModeManager::settingsChanged);
    manager.updateSettings(PowerMode::lowPower,
                           [](PowerModeSettings& settings) { settings.visualizerEnabled = true; });
    QCOMPARE(changes.count(), 1);
    QCOMPARE(manager.effectiveSettings(), (PowerModeSettings{true, 15, 10}));
    power.set(true);
    QCOMPARE(manager.effectiveSettings(), (PowerModeSettings{true, 0, 30}));
    QVERIFY(manager.audioCaptureAllowed());
    const QJsonDocument expected = QJsonDocument::fromJson(R"({
        "lowPower": {"visualizerEnabled": true, "visualizerFPS": 0, "driftRefreshSeconds": 30},
        "normal": {"visualizerEnabled": true, "visualizerFPS": 15, "driftRefreshSeconds": 10},
        "powerUser": {"visualizerEnabled": true, "visualizerFPS": 30, "driftRefreshSeconds": 5}})");
    QCOMPARE(QJsonDocument::fromJson(defaults.data(settingsKey).value()), expected);

    manager.resetToDefaults(PowerMode::lowPower);
    QVERIFY(!manager.audioCaptureAllowed());
    QCOMPARE(PowerModeManager(defaults, power).settings(), factory);
}

QTEST_GUILESS_MAIN(PowerModesTest)
#include "power_modes_test.moc"
