#include "prefs/MenuStyleManager.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/WidgetManager.h"
#include "support/MemoryDefaults.h"

#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTest>

class ManagersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flags();
    void bindsInQml();
    void pillWidth();
    void choice();
};

/// The flags of a manager, by their names.
static QVariantMap flagsOf(const QObject& manager)
{
    QVariantMap flags;
    const QMetaObject& type = *manager.metaObject();
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        flags.insert(QString::fromLatin1(type.property(i).name()), type.property(i).read(&manager));
    }
    return flags;
}

/// `expected` are the keys, "-" before those that are off.
template<typename Manager>
void checkFlags(const char* expected)
{
    MemoryDefaults defaults;
    Manager manager(defaults);
    QVERIFY(defaults.values.isEmpty());
    const QVariantMap fallbacks = flagsOf(manager);
    for (auto flag = fallbacks.begin(); flag != fallbacks.end(); ++flag) {
        manager.setProperty(qPrintable(flag.key()), flag.value()); // an equal value is stored, too
    }
    QStringList keys;
    for (auto value = defaults.values.begin(); value != defaults.values.end(); ++value) {
        keys << (value->toBool() ? QString() : QStringLiteral("-")) + value.key();
    }
    QCOMPARE(keys.join(u' '), QString::fromLatin1(expected));

    for (auto value = defaults.values.begin(); value != defaults.values.end(); ++value) {
        *value = value->toBool() ? QVariant(qlonglong{0}) : QVariant(QStringLiteral("true"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(value.key() + u" cannot be read"));
    }
    QCOMPARE(flagsOf(Manager(defaults)), fallbacks);
    for (auto flag = fallbacks.begin(); flag != fallbacks.end(); ++flag) {
        manager.setProperty(qPrintable(flag.key()), !flag->toBool());
    }
    const QVariantMap changed = flagsOf(manager);
    QCOMPARE(flagsOf(Manager(defaults)), changed);
    for (auto flag = changed.begin(); flag != changed.end(); ++flag) {
        QVERIFY(flag.value() != fallbacks[flag.key()]);
    }
}

void ManagersTest::flags()
{
    checkFlags<PillVisibilityManager>(
        "pellar.pill.showAlbumArt pellar.pill.showNextButton pellar.pill.showPrevButton "
        "pellar.pill.showTitle pellar.pill.showVisualizer");
    checkFlags<MenuVisibilityManager>(
        "pellar.menu.show.audioSources pellar.menu.show.powerMode pellar.menu.show.reactions "
        "pellar.menu.show.recent pellar.menu.show.stats pellar.menu.show.upNext");
    checkFlags<WidgetManager>("pellar.widget.alwaysOnTop -pellar.widget.enabled pellar.widget.showArtist "
                              "pellar.widget.showArtwork -pellar.widget.showLyric pellar.widget.showProgress "
                              "pellar.widget.showTitle pellar.widget.showTransport");
}

void ManagersTest::bindsInQml()
{
    MemoryDefaults defaults;
    PillVisibilityManager pill(defaults);
    QQmlEngine engine;
    engine.rootContext()->setContextProperty(QStringLiteral("pill"), &pill);
    QQmlComponent component(&engine);
    component.setData("import QtQml; QtObject {"
                      "    property bool isChecked: pill.showTitle;"
                      "    onIsCheckedChanged: pill.showVisualizer = isChecked }",
                      QUrl());
    const std::unique_ptr<QObject> window(component.create());
    QVERIFY2(window, qPrintable(component.errorString()));
    const QProperty<bool> seen([&] { return pill.showVisualizer.value(); });
    pill.showTitle = false;
    QVERIFY(!window->property("isChecked").toBool() && !seen);
    QCOMPARE(defaults.boolean(QStringLiteral("pellar.pill.showVisualizer")), std::optional(false));
}

void ManagersTest::pillWidth()
{
    MemoryDefaults defaults;
    PillVisibilityManager manager(defaults);
    QProperty<double> width([&] { return manager.preferredPillWidth(); });
    QList<double> widths = {width};
    const auto watch = width.onValueChanged([&] { widths.append(width); });
    for (auto* const flag : {&manager.showAlbumArt, &manager.showVisualizer, &manager.showTitle,
                             &manager.showPrevButton, &manager.showNextButton}) {
        *flag = false;
    }
    QCOMPARE(widths, (QList<double>{185, 167, 149, 88, 64, 40}));
}

void ManagersTest::choice()
{
    const auto key = QStringLiteral("pellar.menu.style");
    MemoryDefaults defaults;
    MenuStyleManager(defaults).style = PellarMenuStyle::liquidGlass;
    QCOMPARE(defaults.values, (QVariantMap{{key, QStringLiteral("liquidGlass")}}));
    QVERIFY(MenuStyleManager(defaults).style == PellarMenuStyle::liquidGlass);
    for (const QVariant& stored :
         {QVariant(QByteArray("liquidGlass")), QVariant(QStringLiteral("Liquid Glass"))}) {
        defaults.values = {{key, stored}};
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
        QVERIFY(MenuStyleManager(defaults).style == PellarMenuStyle::classic);
    }
}

QTEST_GUILESS_MAIN(ManagersTest)
#include "managers_test.moc"
