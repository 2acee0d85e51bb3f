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

class ManagersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flag_data();
    void flag();
    void pillWidth();
    void choice();
    void widgetFrame();
};

/// Adds rows for the flags of a manager: "showTitle", "showRecentlyPlayed=recent" where the key has another
/// name, "-showLyric" where the default is off.
template<typename Manager>
void addFlags(const QString& prefix, const char* flags)
{
    const Make make = [](UserDefaults& defaults) { return std::make_unique<Manager>(defaults); };
    for (QString each : QString::fromLatin1(flags).split(u' ')) {
        const bool fallback = !each.startsWith(u'-');
        each.remove(u'-');
        const QString key = prefix + each.section(u'=', -1);
        QTest::newRow(qPrintable(key)) << make << each.section(u'=', 0, 0).toLatin1() << key << fallback;
    }
}

void ManagersTest::flag_data()
{
    QTest::addColumn<Make>("make");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("key");
    QTest::addColumn<bool>("fallback");
    addFlags<PillVisibilityManager>(QStringLiteral("pellar.pill."),
                                    "showAlbumArt showVisualizer showTitle showPrevButton showNextButton");
    addFlags<MenuVisibilityManager>(
        QStringLiteral("pellar.menu.show."),
        "showUpNext=upNext showReactions=reactions showPowerMode=powerMode showAudioSources=audioSources "
        "showListeningStats=stats showRecentlyPlayed=recent");
    addFlags<WidgetManager>(QStringLiteral("pellar.widget."),
                            "-isEnabled=enabled showArtwork showTitle showArtist showProgress showTransport "
                            "-showLyric alwaysOnTop");
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
    for (const QVariant& noBoolean :
         {QVariant(fallback ? QString() : QStringLiteral("true")), QVariant(qlonglong{fallback ? 0 : 1})}) {
        defaults.values = {{key, noBoolean}};
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

void ManagersTest::pillWidth()
{
    MemoryDefaults defaults;
    PillVisibilityManager manager(defaults);
    QList<double> widths = {manager.preferredPillWidth()};
    connect(&manager, &PillVisibilityManager::preferredPillWidthChanged, &manager,
            [&] { widths.append(manager.preferredPillWidth()); });
    manager.setShowAlbumArt(false);
    manager.setShowVisualizer(false);
    manager.setShowTitle(false);
    manager.setShowPrevButton(false);
    manager.setShowNextButton(false);
    QCOMPARE(widths, (QList<double>{185, 167, 149, 88, 64, 40}));
    QCOMPARE(PillVisibilityManager(defaults).preferredPillWidth(), 40);
}

void ManagersTest::choice()
{
    const auto styleKey = QStringLiteral("pellar.menu.style");
    const auto themeKey = QStringLiteral("pellar.theme.mode");
    MemoryDefaults defaults;
    QStringList read;
    for (const QVariant& stored :
         {QVariant(), QVariant(QByteArray("liquidGlass")), QVariant(QStringLiteral("Dusk"))}) {
        defaults.values = {{styleKey, stored}, {themeKey, stored}};
        QCOMPARE(displayName(MenuStyleManager(defaults).style()), QStringLiteral("Classic"));
        QCOMPARE(displayName(ThemeManager(defaults).mode()), QStringLiteral("Album Art"));
    }
    for (const char* const name : {"classic", "liquidGlass"}) {
        defaults.setObject(styleKey, QString::fromLatin1(name));
        read.append(displayName(MenuStyleManager(defaults).style()));
    }
    for (const char* const name : {"albumArt", "classic", "midnight", "warmth", "tide", "dusk"}) {
        defaults.setObject(themeKey, QString::fromLatin1(name));
        read.append(displayName(ThemeManager(defaults).mode()));
    }
    QCOMPARE(read.join(u','),
             QStringLiteral("Classic,Liquid Glass,Album Art,Classic,Midnight,Warmth,Tide,Dusk"));

    ThemeManager(defaults).setMode(PellarTheme::warmth);
    MenuStyleManager(defaults).setStyle(PellarMenuStyle::liquidGlass);
    QCOMPARE(defaults.string(themeKey), std::optional(QStringLiteral("warmth")));
    QCOMPARE(defaults.string(styleKey), std::optional(QStringLiteral("liquidGlass")));
}

void ManagersTest::widgetFrame()
{
    const auto key = QStringLiteral("pellar.widget.frame");
    QVariantMap stored = {
        {QStringLiteral("x"), 1.0}, {QStringLiteral("y"), 20.0}, {QStringLiteral("w"), 300.0}};
    MemoryDefaults defaults;
    WidgetManager manager(defaults);
    for (const QVariant& noNumber : {QVariant(), QVariant(QStringLiteral("140"))}) {
        stored.insert(QStringLiteral("h"), noNumber);
        defaults.values = {{key, stored}};
        QCOMPARE(manager.frame(), std::nullopt);
    }
    const QRectF frame(1, 20, 300, 140);
    stored.insert(QStringLiteral("h"), qlonglong{140});
    defaults.values = {{key, stored}};
    QCOMPARE(manager.frame(), std::optional(frame));
    manager.setFrame(frame);
    stored.insert(QStringLiteral("h"), 140.0);
    QCOMPARE(defaults.dictionary(key), std::optional(stored));
    QCOMPARE(manager.frame(), std::optional(frame));
    manager.resetPosition();
    QVERIFY(!defaults.values.contains(key) && !manager.frame());
}

QTEST_GUILESS_MAIN(ManagersTest)
#include "managers_test.moc"
