#include "prefs/PowerModeManager.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QJsonDocument>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString modeKey = u"com.orvalen.pellar.power.manualMode"_s;
const QString settingsKey = u"com.orvalen.pellar.power.settings.v1"_s;

QByteArray entry(const char* id, const char* enabled, const char* rate, const char* refresh)
{
    return QStringLiteral(R"({"%1":{"visualizerEnabled":%2,"visualizerFPS":%3,"driftRefreshSeconds":%4}})")
        .arg(QLatin1String(id), QLatin1String(enabled), QLatin1String(rate), QLatin1String(refresh))
        .toLatin1();
}

QVariantMap parsed(const QByteArray& json)
{
    return QJsonDocument::fromJson(json).toVariant().toMap();
}

} // namespace

class PowerModesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedSettings()
    {
        using Settings = PowerModeSettings;
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        const std::vector<std::pair<QVariant, std::optional<Settings>>> rows = {
            // what is read for the normal mode; none: it cannot be read
            {{}, Settings{true, 15, 10}},
            {entry("normal", "false", "-24", "2147483647"), Settings{false, -24, INT_MAX}},
            {entry("turbo", "true", "120", "1"), Settings{true, 15, 10}},
            {u"{}"_s, {}},
            {entry("normal", "true", "24", "10").chopped(1), {}},
            {entry("normal", "1", "24", "10"), {}},
            {entry("normal", "true", "15.5", "10"), {}},
            {entry("normal", "true", "24", "2147483648"), {}},
            {QByteArray(R"({"turbo":{"visualizerEnabled":true,"visualizerFPS":24}})"), {}}};
        for (const auto& [stored, normal] : rows) {
            if (!normal) {
                QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot be read"_s));
            }
            MemoryDefaults defaults;
            defaults.values.insert(settingsKey, stored);
            PowerModeManager manager(defaults, _power);
            QCOMPARE(manager.effectiveSettings(), normal.value_or(Settings{true, 15, 10}));
            QCOMPARE(manager.settings(PowerMode::lowPower), (Settings{false, 0, 30}));
            QCOMPARE(defaults.object(settingsKey), stored);

            manager.updateSettings(PowerMode::powerUser, [](Settings& mode) { mode.visualizerFPS = 60; });
            QVariantMap expected = normal ? parsed(stored.toByteArray()) : QVariantMap();
            expected.insert(parsed(entry("powerUser", "true", "60", "5")));
            const QVariantMap written = parsed(defaults.data(settingsKey).value());
            for (auto mode = expected.begin(); mode != expected.end(); ++mode) {
                QCOMPARE(written[mode.key()], mode.value());
            }
            manager.resetToDefaults(PowerMode::powerUser);
            QCOMPARE(PowerModeManager(defaults, _power).settings(PowerMode::powerUser),
                     (Settings{true, 30, 5}));
        }
    }

    void theSystemOverrules()
    {
        MemoryDefaults defaults;
        FakePower power;
        power.isLow = true;
        PowerModeManager manager(defaults, power);
        QProperty<bool> isCaptureAllowed([&] { return manager.audioCaptureAllowed(); });
        manager.manualMode = PowerMode::powerUser;
        QVERIFY(manager.effectiveMode() == PowerMode::lowPower && !isCaptureAllowed);
        QCOMPARE(defaults.string(modeKey), std::optional(u"powerUser"_s));
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

private:
    FakePower _power;
};

QTEST_GUILESS_MAIN(PowerModesTest)
#include "power_modes_test.moc"
