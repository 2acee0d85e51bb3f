#include "prefs/MenuStyleManager.h"
#include "prefs/MenuVisibilityManager.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/WidgetManager.h"
#include "support/MemoryDefaults.h"

#include <QMetaProperty>
#include <QTest>

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

    void pillWidth()
    {
        MemoryDefaults defaults;
        PillVisibilityManager manager(defaults);
        const QProperty<double> width([&] { return manager.preferredPillWidth(); });
        QList<double> widths = {width};
        for (auto* const flag : {&manager.showAlbumArt, &manager.showVisualizer, &manager.showTitle,
                                 &manager.showPrevButton, &manager.showNextButton}) {
            *flag = false;
            widths << width;
        }
        QCOMPARE(widths, (QList<double>{185, 167, 149, 88, 64, 40}));
    }

    void style()
    {
        MemoryDefaults defaults;
        MenuStyleManager(defaults).style = PellarMenuStyle::liquidGlass;
        QCOMPARE(defaults.values, (QVariantMap{{u"pellar.menu.style"_s, u"liquidGlass"_s}}));
        QVERIFY(MenuStyleManager(defaults).style == PellarMenuStyle::liquidGlass);
        defaults.setObject(u"pellar.menu.style"_s, u"Liquid Glass"_s);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot be read"_s));
        QVERIFY(MenuStyleManager(defaults).style == PellarMenuStyle::classic);
    }
};

QTEST_GUILESS_MAIN(ManagersTest)
#include "managers_test.moc"
