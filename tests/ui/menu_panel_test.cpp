#include "support/FakeAppearance.h"
#include "support/FakePlatform.h"
#include "ui/MenuFixture.h"
#include "ui/QmlModules.h"
#include "ui/menu/MenuPlacement.h"
#include "ui/menu/PellarMenuModel.h"
#include "ui/menu/PellarMenuPanel.h"

#include <QAccessible>
#include <QApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QWheelEvent>
#include <QtTest>

namespace {

/// A panel on a desktop where time is moved by hand.
struct PanelFixture {
    explicit PanelFixture(const QRect& place = QRect(500, 0, 185, 28)) : pill(place)
    {
        panel.onClose = [this] { ++closed; };
        panel.present();
        (void)QTest::qWaitForWindowActive(&panel.view()); // keys without that go nowhere
    }

    void settle() { desktop.runLoop.advance(0.4); }

    /// The glass without its shadow.
    QRect glass()
    {
        const int shadow = static_cast<int>(panel.shadowExtent());
        return panel.view().geometry().adjusted(shadow, shadow, -shadow, -shadow);
    }

    int wholeHeight() { return static_cast<int>(panel.model().size().height()); }
    QAccessibleInterface* list() { return QAccessible::queryAccessibleInterface(panel.view().rootObject()); }

    /// What a screen reader reads out.
    QStringList heard()
    {
        QStringList names;
        for (int i = 0; i < list()->childCount(); ++i) {
            names << list()->child(i)->text(QAccessible::Name);
        }
        return names;
    }

    /// What a screen reader finds under a title; null when there is no such row.
    QAccessibleInterface* row(const QString& title) { return list()->child(int(heard().indexOf(title))); }

    /// Where a row is seen, in the window.
    QPoint place(const QString& title) { return row(title)->rect().center() - panel.view().position(); }

    void point(const QString& title) { QTest::mouseMove(&panel.view(), place(title)); }
    void click(const QString& title) { QTest::mouseClick(&panel.view(), Qt::LeftButton, {}, place(title)); }

    void press(const QString& keys)
    {
        for (const QString& name : keys.split(u' ')) {
            QTest::keyClick(&panel.view(), QKeySequence(name)[0].key());
        }
    }

    QString current() { return panel.model().rows().value(panel.model().currentRow()).title(); }

    FakePlatform desktop;
    FakeAppearance appearance;
    MenuFixture menu;
    QRect pill;
    int closed = 0;
    PellarMenuPanel panel{
        Panel::Desktop{.runLoop = desktop.runLoop, .bar = desktop.statusBar, .appearance = appearance},
        [this] { return menu.rows(); }, pill};
};

} // namespace

class MenuPanelTest : public QObject
{
    Q_OBJECT

public:
    static void initMain()
    {
        importQmlModules();
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }

private Q_SLOTS:
    void isPlaced()
    {
        const QRectF pill(500, 0, 185, 28);
        const QRectF screen(0, 0, 1280, 800);
        QCOMPARE(menuPlacement(pill, {220, 300}, screen), QRectF(465, 34, 220, 300));
        QCOMPARE(menuPlacement(pill, {220, 900}, screen), QRectF(465, 34, 220, 758)); // too tall
        QCOMPARE(menuPlacement(pill, {300, 300}, {400, 0, 900, 600}).left(), 408);    // the screen's edge
    }

    void unfoldsAndFolds()
    {
        PanelFixture fixture;
        fixture.press(u"Up Up Up Up Right"_s);
        fixture.desktop.runLoop.advance(0.05);
        const int growing = fixture.glass().height();
        fixture.desktop.runLoop.advance(0.1);
        QVERIFY(fixture.glass().height() > growing); // the change of size has not cut the opening short
        fixture.settle();
        const QRect tall = fixture.glass();
        QCOMPARE(tall.height(), fixture.wholeHeight());
        QCOMPARE(tall.topRight(), QPoint(fixture.pill.right(), fixture.pill.top() + 28 + 6));
        QCOMPARE(fixture.desktop.runLoop.pending(), 0); // nothing moves any more
        fixture.press(u"Left"_s);
        QVERIFY(fixture.glass().height() < tall.height() && fixture.glass().topRight() == tall.topRight());

        fixture.panel.close();
        fixture.desktop.runLoop.advance(0.2);
        QVERIFY(fixture.panel.isVisible() && fixture.glass().height() < fixture.wholeHeight());
        fixture.panel.close(); // does not begin anew
        fixture.desktop.runLoop.advance(0.06);
        QVERIFY(!fixture.panel.isVisible() && fixture.closed == 1);
    }

    void obeysKeys()
    {
        using Row = std::array<const char*, 3>;
        for (const auto& [keys, current, told] : {Row{"End Down", "Now Playing…", ""},
                                                  {"Return", "", ""},
                                                  {"Up Up Up Up Right Down Return", "Spotify", "source 2"},
                                                  {"Up Up Up Up Right Down Left", "Audio Sources", ""},
                                                  {"Up Up Up Up Return Up Right A", "Low Power", ""},
                                                  {"Space", "", "preview"}}) {
            PanelFixture fixture;
            fixture.settle();
            fixture.press(QString::fromUtf8(keys));
            QCOMPARE(fixture.current(), QString::fromUtf8(current));
            QCOMPARE(fixture.menu.told.join(u'|'), QString::fromUtf8(told));
            fixture.settle();
            QCOMPARE(fixture.closed, fixture.menu.told.size()); // choosing closes, nothing else does
            fixture.press(u"Escape"_s);
            fixture.settle();
            QCOMPARE(fixture.closed, 1);
        }
    }

    void choosesByPointer()
    {
        PanelFixture fixture;
        fixture.settle();
        fixture.click(u"Salt & Stone"_s); // a heading
        QVERIFY(fixture.menu.told.isEmpty());
        fixture.click(u"Power Mode (Normal)"_s);
        fixture.click(u"Audio Sources"_s); // one list is open at a time
        QVERIFY(!fixture.heard().contains(u"Power User"_s));
        QTest::mousePress(&fixture.panel.view(), Qt::LeftButton, {}, fixture.place(u"Spotify"_s));
        const QPoint other = fixture.place(u"System Audio"_s); // thought better of
        QTest::mouseRelease(&fixture.panel.view(), Qt::LeftButton, {}, other);
        QVERIFY(fixture.menu.told.isEmpty());
        fixture.click(u"System Audio"_s);
        QCOMPARE(fixture.menu.told, QStringList(u"source 4"_s));
        fixture.click(u"Quit Pellar"_s); // it is on its way out
        QCOMPARE(fixture.menu.told.size(), 1);
    }

    void scrolls()
    {
        PanelFixture fixture(QRect(500, 500, 185, 28)); // with little room below
        fixture.settle();
        const auto isSeen = [&fixture](const QString& title) {
            return fixture.glass().contains(fixture.row(title)->rect());
        };
        const QString last = u"Quit Pellar"_s;
        QVERIFY(!isSeen(last));
        fixture.press(u"Up"_s);
        QVERIFY(isSeen(last));
        fixture.press(u"Home"_s);
        QVERIFY(isSeen(u"Salt & Stone"_s)); // the heading, too
        fixture.press(u"End Up Up Up Right"_s);
        QVERIFY(isSeen(u"Audio Sources"_s) && isSeen(u"System Audio"_s));

        // The row under the pointer is the current one, also when the list has moved and the pointer has not.
        const QPoint point(120, 100);
        const QPoint onScreen = fixture.panel.view().mapToGlobal(point);
        QTest::mouseMove(&fixture.panel.view(), point);
        for (const int notches : {2, -1, 100, -100}) {
            QWheelEvent turn(point, onScreen, {}, {0, -120 * notches}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&fixture.panel.view(), &turn);
            QTRY_VERIFY(fixture.row(fixture.current())->rect().contains(onScreen));
        }
        QVERIFY(isSeen(u"Salt & Stone"_s));

        // But not when a key has moved the list.
        fixture.press(u"End"_s);
        const QSignalSpy frames(&fixture.panel.view(), &QQuickWindow::frameSwapped);
        QTRY_VERIFY((fixture.panel.view().update(), frames.size() > 2));
        QCOMPARE(fixture.current(), last);
    }

    void keepsCurrentRow()
    {
        PanelFixture fixture;
        fixture.settle();
        const QAbstractItemModelTester tester(&fixture.panel.model());
        fixture.point(u"Settings…"_s); // where the pointer has been forgotten
        fixture.press(u"Home Down Down Down Down Down Down Down Right Down"_s);
        const AudioOutputDevice speakers{41, u"Speakers"_s, {}};
        const AudioOutputDevice headphones{52, u"Headphones"_s, {}};
        using Outputs = QList<AudioOutputDevice>;
        for (const auto& outputs : {Outputs{{60, u"Kitchen"_s, {}}, speakers, headphones}, {headphones}}) {
            fixture.menu.state.outputs = outputs;
            fixture.panel.refresh();
            QCOMPARE(fixture.current(), u"Headphones"_s);
            QTRY_VERIFY(fixture.row(u"Headphones"_s)->state().focused);
            QCOMPARE(fixture.glass().height(), fixture.wholeHeight());
        }
        fixture.press(u"Return"_s);
        QCOMPARE(fixture.menu.told, QStringList(u"output 52"_s));
    }

    /// As a screen reader asks.
    void isHeard()
    {
        PanelFixture fixture;
        fixture.settle();
        QAccessibleInterface* const menu = fixture.row(u"Quit Pellar"_s)->parent();
        QVERIFY(QAccessible::queryAccessibleInterface(qApp)->indexOfChild(menu->parent()) >= 0);
        QCOMPARE(menu->role(), QAccessible::PopupMenu);
        QCOMPARE(menu->child(0)->role(), QAccessible::StaticText);
        QCOMPARE(menu->child(2)->role(), QAccessible::Separator);
        QAccessibleInterface* const outputs = fixture.row(u"Audio Output"_s);
        QVERIFY(outputs->state().expandable && !outputs->state().expanded);
        QCOMPARE(outputs->role(), QAccessible::MenuItem);
        outputs->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(outputs->state().expanded);
        QStringList titles;
        for (const auto& row : fixture.panel.model().rows()) {
            titles << row.title();
        }
        QTRY_COMPARE(fixture.heard(), titles);
        QVERIFY(fixture.row(u"Headphones"_s)->state().checked);
        QVERIFY(!fixture.row(u"Speakers"_s)->state().checked);
        fixture.press(u"Down"_s);
        QVERIFY(menu->child(3)->state().focused);
    }

    void showsWholeTitle()
    {
        PanelFixture fixture;
        fixture.menu.state.title = u"A Title that Nobody Has Ever Sung to its End. "_s.repeated(3);
        fixture.panel.refresh();
        fixture.settle();
        const auto* const tip = fixture.panel.view().rootObject()->findChild<QQuickItem*>(u"tip"_s);
        fixture.point(u"Now Playing…"_s);
        QVERIFY(!tip->isVisible());
        fixture.point(fixture.panel.model().rows().first().title());
        QTRY_VERIFY(tip->isVisible() && tip->height() > 40); // on several lines
    }
};

QTEST_MAIN(MenuPanelTest)
#include "menu_panel_test.moc"
