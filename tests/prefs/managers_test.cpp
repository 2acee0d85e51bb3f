#include "prefs/MenuStyleManager.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/WidgetManager.h"
#include "support/MemoryDefaults.h"

#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>

using namespace Qt::StringLiterals;

/// Keys and the values of their flags.
using Flags = QVariantMap;

class ManagersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flags();
    void bindsInQml();
    void pillWidth();
    void style();
};

/// What is stored when every flag of a manager has been written, as it was or turned.
template<typename Manager>
Flags written(MemoryDefaults& defaults, bool isTurned)
{
    Manager manager(defaults);
    const QMetaObject& type = Manager::staticMetaObject;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        type.property(i).write(&manager, type.property(i).read(&manager).toBool() != isTurned);
    }
    return defaults.values;
}

/// `off` are the keys of the flags that are off by default.
template<typename Manager>
void checkFlags(const QString& prefix, const QStringList& on, const QStringList& off)
{
    Flags fallbacks;
    Flags turned;
    Flags odd;
    for (const QString& name : on + off) {
        const bool isOn = on.contains(name);
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

void ManagersTest::flags()
{
    checkFlags<PillVisibilityManager>(
        u"pellar.pill."_s,
        {u"showAlbumArt"_s, u"showVisualizer"_s, u"showTitle"_s, u"showPrevButton"_s, u"showNextButton"_s},
        {});
    checkFlags<MenuVisibilityManager>(
        u"pellar.menu.show."_s,
        {u"upNext"_s, u"reactions"_s, u"powerMode"_s, u"audioSources"_s, u"stats"_s, u"recent"_s}, {});
    checkFlags<WidgetManager>(u"pellar.widget."_s,
                              {u"showArtwork"_s, u"showTitle"_s, u"showArtist"_s, u"showProgress"_s,
                               u"showTransport"_s, u"alwaysOnTop"_s},
                              {u"enabled"_s, u"showLyric"_s});
}

void ManagersTest::bindsInQml()
{
    MemoryDefaults defaults;
    PillVisibilityManager pill(defaults);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQml; QtObject { required property var pill; property bool on: pill.showTitle;"
                      "onOnChanged: pill.showVisualizer = on }",
                      QUrl());
    const std::unique_ptr<QObject> window(
        component.createWithInitialProperties({{u"pill"_s, QVariant::fromValue(&pill)}}));
    QVERIFY2(window, qPrintable(component.errorString()));
    pill.showTitle = false;
    QVERIFY(!pill.showVisualizer);
    QCOMPARE(defaults.boolean(u"pellar.pill.showVisualizer"_s), std::optional(false));
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

void ManagersTest::style()
{
    MemoryDefaults defaults;
    MenuStyleManager(defaults).style = PellarMenuStyle::liquidGlass;
    QCOMPARE(defaults.values, (QVariantMap{{u"pellar.menu.style"_s, u"liquidGlass"_s}}));
    QVERIFY(MenuStyleManager(defaults).style == PellarMenuStyle::liquidGlass);
    defaults.setObject(u"pellar.menu.style"_s, u"Liquid Glass"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot be read"_s));
    QVERIFY(MenuStyleManager(defaults).style == PellarMenuStyle::classic);
}

QTEST_GUILESS_MAIN(ManagersTest)
#include "managers_test.moc"
