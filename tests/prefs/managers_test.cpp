#include "prefs/MenuStyleManager.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/ThemeManager.h"
#include "prefs/WidgetManager.h"
#include "support/MemoryDefaults.h"

#include <QRectF>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using Make = std::function<std::unique_ptr<QObject>(UserDefaults&)>;
Q_DECLARE_METATYPE(Make)

namespace {

template<typename Manager>
Make make()
{
    return [](UserDefaults& defaults) { return std::make_unique<Manager>(defaults); };
}

} // namespace

class ManagersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flag_data();
    void flag();
    void pillWidth_data();
    void pillWidth();
    void choice_data();
    void choice();
    void widgetFrame_data();
    void widgetFrame();
};

void ManagersTest::flag_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("fallback");

    const auto add = [](const Make& make, const char* property, const char* key, bool fallback) {
        QTest::newRow(key) << make << QByteArray(property) << QString::fromLatin1(key) << fallback;
    };
    const Make pill = make<PillVisibilityManager>();
    add(pill, "showAlbumArt", "pellar.pill.showAlbumArt", true);
    add(pill, "showVisualizer", "pellar.pill.showVisualizer", true);
    add(pill, "showTitle", "pellar.pill.showTitle", true);
    add(pill, "showPrevButton", "pellar.pill.showPrevButton", true);
    add(pill, "showNextButton", "pellar.pill.showNextButton", true);
    const Make menu = make<MenuVisibilityManager>();
    add(menu, "showUpNext", "pellar.menu.show.upNext", true);
    add(menu, "showReactions", "pellar.menu.show.reactions", true);
    add(menu, "showPowerMode", "pellar.menu.show.powerMode", true);
    add(menu, "showAudioSources", "pellar.menu.show.audioSources", true);
    add(menu, "showListeningStats", "pellar.menu.show.stats", true);
    add(menu, "showRecentlyPlayed", "pellar.menu.show.recent", true);
    const Make widget = make<WidgetManager>();
    add(widget, "isEnabled", "pellar.widget.enabled", false);
    add(widget, "showArtwork", "pellar.widget.showArtwork", true);
    add(widget, "showTitle", "pellar.widget.showTitle", true);
    add(widget, "showArtist", "pellar.widget.showArtist", true);
    add(widget, "showProgress", "pellar.widget.showProgress", true);
    add(widget, "showTransport", "pellar.widget.showTransport", true);
    add(widget, "showLyric", "pellar.widget.showLyric", false);
    add(widget, "alwaysOnTop", "pellar.widget.alwaysOnTop", true);
}

void ManagersTest::flag()
{
    QFETCH(Make, make);
    QFETCH(QByteArray, property);
    QFETCH(QString, key);
    QFETCH(bool, fallback);

    MemoryDefaults defaults;
    const auto read = [&] { return make(defaults)->property(property.constData()); };
    QCOMPARE(read(), QVariant(fallback));
    QVERIFY(defaults.values.isEmpty());

    const QVariantList noBooleans = {QStringLiteral("no"), QStringLiteral("true"), qlonglong{0},
                                     qlonglong{1},         QByteArray("1"),        0.0};
    for (const QVariant& stored : noBooleans) {
        defaults.values = {{key, stored}};
        QCOMPARE(read(), QVariant(fallback));
    }

    const auto manager = make(defaults);
    manager->setProperty(property.constData(), fallback); // no change, yet it replaces the odd value
    QCOMPARE(defaults.boolean(key), std::optional(fallback));
    const QByteArray signal = "2" + property + "Changed()";
    const QSignalSpy changes(manager.get(), signal.constData());
    manager->setProperty(property.constData(), !fallback);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(defaults.values, (QVariantMap{{key, !fallback}}));
    QCOMPARE(read(), QVariant(!fallback));
}

void ManagersTest::pillWidth_data()
{
    QTest::addColumn<double>("width"); ///< with only the flags shown that the row is named after

    QTest::newRow("") << 40.0;
    QTest::newRow("showAlbumArt") << 58.0;
    QTest::newRow("showVisualizer") << 58.0;
    QTest::newRow("showTitle") << 101.0;
    QTest::newRow("showPrevButton") << 64.0;
    QTest::newRow("showNextButton") << 64.0;
    QTest::newRow("showAlbumArt showVisualizer showTitle showPrevButton showNextButton") << 185.0;
}

void ManagersTest::pillWidth()
{
    QFETCH(double, width);
    const QList<QByteArray> shown = QByteArray(QTest::currentDataTag()).split(' ');
    MemoryDefaults defaults;
    PillVisibilityManager manager(defaults);
    QProperty<double> follower([&] { return manager.preferredPillWidth(); });
    double announced = manager.preferredPillWidth();
    connect(&manager, &PillVisibilityManager::preferredPillWidthChanged, &manager,
            [&] { announced = manager.preferredPillWidth(); });
    for (const char* flag :
         {"showAlbumArt", "showVisualizer", "showTitle", "showPrevButton", "showNextButton"}) {
        manager.setProperty(flag, shown.contains(flag));
    }
    QCOMPARE(manager.preferredPillWidth(), width);
    QCOMPARE(announced, width);
    QCOMPARE(follower.value(), width);
    QCOMPARE(PillVisibilityManager(defaults).preferredPillWidth(), width);
}

void ManagersTest::choice_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<QString>("style");
    QTest::addColumn<QString>("theme");

    const auto add = [](const QVariant& stored, const char* style, const char* theme) {
        QTest::addRow("%s %s", stored.typeName(), qPrintable(stored.toString()))
            << stored << QString::fromLatin1(style) << QString::fromLatin1(theme);
    };
    add(QVariant(), "Classic", "Album Art");
    add(QStringLiteral("liquidGlass"), "Liquid Glass", "Album Art");
    add(QStringLiteral("Liquid Glass"), "Classic", "Album Art");
    add(QByteArray("liquidGlass"), "Classic", "Album Art");
    add(QStringLiteral("classic"), "Classic", "Classic");
    add(QStringLiteral("midnight"), "Classic", "Midnight");
    add(QStringLiteral("warmth"), "Classic", "Warmth");
    add(QStringLiteral("tide"), "Classic", "Tide");
    add(QStringLiteral("dusk"), "Classic", "Dusk");
    add(QStringLiteral("Dusk"), "Classic", "Album Art");
}

void ManagersTest::choice()
{
    QFETCH(QVariant, stored);
    const auto styleKey = QStringLiteral("pellar.menu.style");
    const auto themeKey = QStringLiteral("pellar.theme.mode");
    MemoryDefaults defaults;
    defaults.values = {{styleKey, stored}, {themeKey, stored}};
    MenuStyleManager style(defaults);
    ThemeManager theme(defaults);
    QTEST(displayName(style.style()), "style");
    QTEST(displayName(theme.mode()), "theme");

    for (const PellarTheme mode : allThemes()) {
        theme.setMode(mode);
        QCOMPARE(ThemeManager(defaults).mode(), mode);
    }
    QCOMPARE(defaults.string(themeKey), std::optional(QStringLiteral("dusk")));
    for (const PellarMenuStyle other : allMenuStyles()) {
        style.setStyle(other);
        QCOMPARE(MenuStyleManager(defaults).style(), other);
    }
    QCOMPARE(defaults.string(styleKey), std::optional(QStringLiteral("classic")));
}

void ManagersTest::widgetFrame_data()
{
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<std::optional<QRectF>>("frame");

    const auto add = [](const char* name, const QVariant& x, const QVariant& h,
                        const std::optional<QRectF>& frame) {
        QTest::newRow(name) << QVariant(QVariantMap{{QStringLiteral("x"), x},
                                                    {QStringLiteral("y"), 20.0},
                                                    {QStringLiteral("w"), 300.0},
                                                    {QStringLiteral("h"), h}})
                            << frame;
    };
    add("doubles", -10.5, 140.0, QRectF(-10.5, 20, 300, 140));
    add("integers", qlonglong{1}, qlonglong{2}, QRectF(1, 20, 300, 2));
    add("missing", 1.0, QVariant(), std::nullopt);
    add("a text", QStringLiteral("1"), 140.0, std::nullopt);
    QTest::newRow("no dictionary") << QVariant(QVariantList{1.0, 2.0}) << std::optional<QRectF>();
}

void ManagersTest::widgetFrame()
{
    QFETCH(QVariant, stored);
    const auto key = QStringLiteral("pellar.widget.frame");
    MemoryDefaults defaults;
    defaults.values.insert(key, stored);
    WidgetManager manager(defaults);
    QTEST(manager.frame(), "frame");

    const QRectF moved(1.25, -2, 333, 144);
    manager.setFrame(moved);
    QCOMPARE(defaults.dictionary(key).value().value(QStringLiteral("h")), QVariant(144.0));
    QCOMPARE(WidgetManager(defaults).frame(), std::optional(moved));
    manager.resetPosition();
    QVERIFY(!defaults.values.contains(key));
    QVERIFY(!manager.frame());
}

QTEST_GUILESS_MAIN(ManagersTest)
#include "managers_test.moc"
