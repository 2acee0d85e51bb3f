#include "prefs/PowerModeManager.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QJsonDocument>
#include <QTest>

namespace {

const QString modeKey = QStringLiteral("com.orvalen.pellar.power.manualMode");
const QString settingsKey = QStringLiteral("com.orvalen.pellar.power.settings.v1");

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
    void theSystemOverrules();

private:
    FakePower _power;
};

void PowerModesTest::storedSettings_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<std::optional<PowerModeSettings>>("normal"); // none: it cannot be read
    const auto row = [](const char* name, const QVariant& stored, std::optional<PowerModeSettings> normal) {
        QTest::newRow(name) << stored << normal;
    };
    row("nothing", {}, PowerModeSettings{true, 15, 10});
    row("one mode", entry("normal", "false", "-24", "2147483647"), PowerModeSettings{false, -24, INT_MAX});
    row("unknown mode", entry("turbo", "true", "120", "1"), PowerModeSettings{true, 15, 10});
    row("no data", QStringLiteral("{}"), {});
    row("cut short", entry("normal", "true", "24", "10").chopped(1), {});
    row("number for a truth value", entry("normal", "1", "24", "10"), {});
    row("fraction", entry("normal", "true", "15.5", "10"), {});
    row("beyond int", entry("normal", "true", "24", "2147483648"), {});
    row("field missing", QByteArray(R"({"turbo":{"visualizerEnabled":true,"visualizerFPS":24}})"), {});
}

void PowerModesTest::storedSettings()
{
    QFETCH(QVariant, stored);
    QFETCH(std::optional<PowerModeSettings>, normal);
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    if (!normal) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
    }
    MemoryDefaults defaults;
    defaults.values.insert(settingsKey, stored);
    PowerModeManager manager(defaults, _power);
    QCOMPARE(manager.effectiveSettings(), normal.value_or(PowerModeSettings{true, 15, 10}));
    QCOMPARE(manager.settings(PowerMode::lowPower), (PowerModeSettings{false, 0, 30}));
    QCOMPARE(defaults.object(settingsKey), stored);

    manager.updateSettings(PowerMode::powerUser, [](PowerModeSettings& mode) { mode.visualizerFPS = 60; });
    QVariantMap expected =
        normal ? QJsonDocument::fromJson(stored.toByteArray()).toVariant().toMap() : QVariantMap();
    expected.insert(QJsonDocument::fromJson(entry("powerUser", "true", "60", "5")).toVariant().toMap());
    const QVariantMap written =
        QJsonDocument::fromJson(defaults.data(settingsKey).value()).toVariant().toMap();
    for (auto mode = expected.begin(); mode != expected.end(); ++mode) {
        QCOMPARE(written[mode.key()], mode.value());
    }
    manager.resetToDefaults(PowerMode::powerUser);
    QCOMPARE(PowerModeManager(defaults, _power).settings(PowerMode::powerUser),
             (PowerModeSettings{true, 30, 5}));
}

void PowerModesTest::theSystemOverrules()
{
    MemoryDefaults defaults;
    FakePower power;
    power.isLow = true;
    PowerModeManager manager(defaults, power);
    QProperty<bool> isCaptureAllowed([&] { return manager.audioCaptureAllowed(); });
    manager.manualMode = PowerMode::powerUser;
    QVERIFY(manager.effectiveMode() == PowerMode::lowPower && !isCaptureAllowed);
    QCOMPARE(defaults.string(modeKey), std::optional(QStringLiteral("powerUser")));
    QVERIFY(PowerModeManager(defaults, power).manualMode == PowerMode::powerUser);
    manager.updateSettings(PowerMode::lowPower,
                           [](PowerModeSettings& mode) { mode.visualizerEnabled = true; });
    QVERIFY(isCaptureAllowed);
    manager.resetToDefaults(PowerMode::lowPower);
    QVERIFY(!isCaptureAllowed);
    power.isLow = false;
    Q_EMIT power.changed();
    QVERIFY(isCaptureAllowed && manager.effectiveMode() == PowerMode::powerUser);
}

QTEST_GUILESS_MAIN(PowerModesTest)
#include "power_modes_test.moc"
