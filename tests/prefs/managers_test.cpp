#include "prefs/AlbumArtTint.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "prefs/ThemeManager.h"
#include "prefs/WidgetManager.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QtTest>

using namespace Qt::StringLiterals;

namespace {

/// What is stored when every flag of a manager has been written, as it was or turned.
template<typename Manager>
QVariantMap written(MemoryDefaults& defaults, bool isTurned)
{
    Manager manager(defaults);
    const QMetaObject& type = Manager::staticMetaObject;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QBindable<bool> flag(type.property(i).bindable(&manager)); // which QML and bindings follow
        type.property(i).write(&manager, flag.value() != isTurned);
    }
    return defaults.values;
}

/// The keys are those of the flags that are on and off by default.
template<typename Manager>
void checkFlags(const QString& prefix, const QString& on, const QString& off)
{
    QVariantMap fallbacks;
    QVariantMap turned;
    QVariantMap odd;
    for (const QString& name : QString(on + u' ' + off).split(u' ', Qt::SkipEmptyParts)) {
        const bool isOn = !off.contains(name);
        fallbacks[prefix + name] = isOn;
        turned[prefix + name] = !isOn;
        odd[prefix + name] = isOn ? QVariant(qlonglong{0}) : QVariant(u"true"_s);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(prefix + name + u" cannot be read"_s));
    }
    MemoryDefaults defaults;
    QCOMPARE(written<Manager>(defaults, false), fallbacks); // an equal value is stored, too
    QCOMPARE(written<Manager>(defaults, true), turned);
    QCOMPARE(written<Manager>(defaults, true), fallbacks);
    defaults.values = odd;
    QCOMPARE(written<Manager>(defaults, false), fallbacks);
}

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

QImage filled(const QColor& color)
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

} // namespace

class ManagersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flags()
    {
        checkFlags<PillVisibilityManager>(
            u"pellar.pill."_s, u"showAlbumArt showVisualizer showTitle showPrevButton showNextButton"_s, {});
        checkFlags<MenuVisibilityManager>(u"pellar.menu.show."_s,
                                          u"upNext reactions powerMode audioSources stats recent"_s, {});
        checkFlags<WidgetManager>(
            u"pellar.widget."_s, u"showArtwork showTitle showArtist showProgress showTransport alwaysOnTop"_s,
            u"enabled showLyric"_s);
    }

    void storedSettings()
    {
        using Settings = PowerModeSettings;
        FakePower power;
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        const std::vector<std::pair<QVariant, std::optional<Settings>>> rows = {
            // what is read for the normal mode; none: it cannot be read
            {{}, Settings{true, 15, 10}},
            {entry("normal", "false", "-24", "2147483647"), Settings{false, -24, INT_MAX}},
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
            PowerModeManager manager(defaults, power);
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
            QCOMPARE(PowerModeManager(defaults, power).settings(PowerMode::powerUser),
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

    void boosts()
    {
        QCOMPARE(boostedTint(Qt::black).rgb(), QColor::fromHsvF(0, 0.45F, 0.55F).rgb());
        QCOMPARE(boostedTint(QColor::fromHsvF(0.5F, 0.5F, 0.6F)).rgb(),
                 QColor::fromHsvF(0.5F, 0.8F, 0.69F).rgb());
    }

    void followsModeAndArtwork()
    {
        MemoryDefaults defaults;
        ThemeManager theme(defaults);
        QVERIFY(!theme.tint());
        theme.updateArtwork(filled(QColor(0, 100, 0)));
        QTRY_COMPARE(theme.tint(), std::optional(boostedTint(QColor(0, 100, 0))));
        theme.mode = PellarTheme::midnight;
        theme.updateArtwork(filled(Qt::blue));
        QCOMPARE(theme.tint(), std::optional(QColor::fromRgbF(0, 0, 0)));
        QCOMPARE(ThemeManager(defaults).tint(), theme.tint());
        theme.mode = PellarTheme::albumArt;
        QTRY_COMPARE(theme.tint(), std::optional(boostedTint(Qt::blue)));
        theme.updateArtwork({});
        QVERIFY(!theme.tint());
    }
};

QTEST_GUILESS_MAIN(ManagersTest)
#include "managers_test.moc"
