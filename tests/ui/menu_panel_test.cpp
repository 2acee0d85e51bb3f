#include "support/FakeAppearance.h"
#include "support/FakePlatform.h"
#include "ui/MenuFixture.h"
#include "ui/QmlModules.h"
#include "ui/menu/MenuPlacement.h"
#include "ui/menu/PellarMenuModel.h"
#include "ui/menu/PellarMenuPanel.h"

#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>

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

    /// What a screen reader finds under a title; null when there is no such row.
    QAccessibleInterface* row(const QString& title)
    {
        QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(panel.view().rootObject());
        for (int i = 0; i < list->childCount(); ++i) {
            if (list->child(i)->text(QAccessible::Name) == title) {
                return list->child(i);
            }
        }
        return nullptr;
    }

    /// Where a row is seen, in the window.
    QPoint place(const QString& title) { return row(title)->rect().center() - panel.view().position(); }

    void point(const QString& title) { QTest::mouseMove(&panel.view(), place(title)); }
    void click(const QString& title)
    {
        QTest::mouseClick(&panel.view(), Qt::LeftButton, Qt::NoModifier, place(title));
    }

    void press(const QString& keys)
    {
        for (const QString& name : keys.split(u' ')) {
            QTest::keyClick(&panel.view(), QKeySequence(name)[0].key());
        }
    }

    void turnWheel(QPoint point, int notches)
    {
        QWheelEvent event(point, panel.view().mapToGlobal(point), {}, {0, -120 * notches}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&panel.view(), &event);
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

const QRect lowPill(500, 500, 185, 28); ///< below which the screen has little room

/// A window of the program beside the panel.
class OtherWindow final : public QWindow
{
    Q_OBJECT

public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
};

} // namespace

class MenuPanelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPlaced();
    void moves();
    void unfoldsAndFolds();
    void obeysKeys_data();
    void obeysKeys();
    void choosesByPointer();
    void scrolls();
    void keepsCurrentRow();
    void isHeard();
    void showsWholeTitle();
    void closesBesideIt();
};

void MenuPanelTest::isPlaced()
{
    const QRectF pill(500, 0, 185, 28);
    const QRectF screen(0, 0, 1280, 800);
    QCOMPARE(menuPlacement(pill, {220, 300}, screen), QRectF(465, 34, 220, 300));
    QCOMPARE(menuPlacement(pill, {220, 900}, screen), QRectF(465, 34, 220, 758));             // too tall
    QCOMPARE(menuPlacement(pill, {300, 300}, {400, 0, 900, 600}), QRectF(408, 34, 300, 300)); // second screen
    QCOMPARE(menuPlacement(pill, {220, 300}, {0, 0, 1280, 20}), QRectF(465, 34, 220, 0));     // no room
}

/// The expected values were found by bisection.
void MenuPanelTest::moves()
{
    const PanelFrame whole{.rect = QRectF(465, 34, 220, 100), .opacity = 1};
    const auto check = [&whole](const PanelMotion& motion, double progress, double height, double opacity) {
        const PanelFrame frame = whole.unfolded(motion.at(progress));
        QCOMPARE(frame.rect.topRight(), whole.rect.topRight());
        QVERIFY2(std::abs(frame.rect.height() - height) < 0.1, qPrintable(QString::number(height)));
        QVERIFY2(std::abs(frame.opacity - opacity) < 0.001, qPrintable(QString::number(opacity)));
    };
    check({.first = {0.25, 1}, .second = {0.5, 1}}, 0.25, 68.86, 0.6886);
    check({.first = {0.5, 0}, .second = {0.75, 0}}, 0.75, 31.14, 0.3114);
    check({.first = {0.22, 1.2}, .second = {0.36, 1}}, 0.5, 100.68, 1); // beyond its end, and back
}

void MenuPanelTest::unfoldsAndFolds()
{
    PanelFixture fixture;
    QVERIFY(fixture.glass().height() < 2);
    fixture.press(QStringLiteral("Up Up Up Up Right"));
    fixture.desktop.runLoop.advance(0.05);
    const int growing = fixture.glass().height();
    fixture.desktop.runLoop.advance(0.1);
    QVERIFY(fixture.glass().height() > growing); // the change of size has not cut the opening short
    fixture.settle();
    const QRect tall = fixture.glass();
    QCOMPARE(tall.height(), fixture.wholeHeight());
    QCOMPARE(tall.topRight(), QPoint(fixture.pill.right(), fixture.pill.top() + 28 + 6));
    QCOMPARE(fixture.panel.view().opacity(), 1.0);
    QCOMPARE(fixture.desktop.runLoop.pending(), 0); // nothing moves any more
    fixture.press(QStringLiteral("Left"));
    QVERIFY(fixture.glass().height() < tall.height());
    QCOMPARE(fixture.glass().topRight(), tall.topRight());

    fixture.panel.close();
    fixture.desktop.runLoop.advance(0.2);
    QVERIFY(fixture.panel.isVisible() && fixture.glass().height() < fixture.wholeHeight());
    fixture.panel.close(); // does not begin anew
    fixture.desktop.runLoop.advance(0.06);
    QVERIFY(!fixture.panel.isVisible());
    QCOMPARE(fixture.closed, 1);
}

void MenuPanelTest::obeysKeys_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("current"); ///< title of the row
    QTest::addColumn<QString>("told");
    const auto row = [](const char* keys, const char* current, const char* told) {
        QTest::newRow(keys) << QString::fromLatin1(keys) << QString::fromUtf8(current)
                            << QString::fromUtf8(told);
    };
    row("End Down", "Now Playing…", "");
    row("Home Down Return", "Open in Music App", "open");
    row("Return", "", "");
    row("Space", "", "preview");
    row("Up Up Up Up Right Down Return", "Spotify", "source 2");
    row("Up Up Up Up Right Down Left", "Audio Sources", "");
    row("Up Up Up Up Return Up Right A", "Low Power", "");
    row("Up Right", "Quit Pellar", "");
}

void MenuPanelTest::obeysKeys()
{
    QFETCH(QString, keys);
    PanelFixture fixture;
    fixture.settle();
    fixture.press(keys);
    QTEST(fixture.current(), "current");
    QTEST(fixture.menu.told.join(u'|'), "told");
    fixture.settle();
    QCOMPARE(fixture.closed, fixture.menu.told.size()); // choosing closes, nothing else does
    QTest::keyClick(&fixture.panel.view(), Qt::Key_Escape);
    fixture.settle();
    QCOMPARE(fixture.closed, 1);
}

void MenuPanelTest::choosesByPointer()
{
    PanelFixture fixture;
    fixture.settle();
    fixture.click(QStringLiteral("Salt & Stone")); // a heading
    QVERIFY(fixture.menu.told.isEmpty());
    fixture.click(QStringLiteral("Power Mode (Normal)"));
    fixture.click(QStringLiteral("Audio Sources")); // one list is open at a time
    QVERIFY(fixture.row(QStringLiteral("Power User")) == nullptr);
    QTest::mousePress(&fixture.panel.view(), Qt::LeftButton, {}, fixture.place(QStringLiteral("Spotify")));
    QTest::mouseRelease(&fixture.panel.view(), Qt::LeftButton, {},
                        fixture.place(QStringLiteral("System Audio"))); // thought better of
    QVERIFY(fixture.menu.told.isEmpty());
    fixture.click(QStringLiteral("System Audio"));
    QCOMPARE(fixture.menu.told, QStringList(QStringLiteral("source 4")));
    fixture.click(QStringLiteral("Quit Pellar")); // it is on its way out
    QCOMPARE(fixture.menu.told.size(), 1);
}

void MenuPanelTest::scrolls()
{
    PanelFixture fixture(lowPill);
    fixture.settle();
    const auto isSeen = [&fixture](const QString& title) {
        return fixture.glass().contains(fixture.row(title)->rect());
    };
    const QString last = QStringLiteral("Quit Pellar");
    QVERIFY(!isSeen(last));
    fixture.press(QStringLiteral("Up"));
    QVERIFY(isSeen(last));
    fixture.press(QStringLiteral("Home"));
    QVERIFY(isSeen(QStringLiteral("Salt & Stone"))); // the heading, too
    fixture.press(QStringLiteral("End Up Up Up Right"));
    QVERIFY(isSeen(QStringLiteral("Audio Sources")) && isSeen(QStringLiteral("System Audio")));

    // The row under the pointer is the current one, also when the list has moved and the pointer has not.
    const QPoint point(120, 100);
    QTest::mouseMove(&fixture.panel.view(), point);
    for (const int notches : {2, -1, 100, -100}) {
        fixture.turnWheel(point, notches);
        QTRY_VERIFY(fixture.row(fixture.current()) != nullptr);
        QTRY_VERIFY(fixture.row(fixture.current())->rect().contains(fixture.panel.view().mapToGlobal(point)));
    }
    QVERIFY(isSeen(QStringLiteral("Salt & Stone")));

    // But not when a key has moved the list.
    fixture.press(QStringLiteral("End"));
    const QSignalSpy frames(&fixture.panel.view(), &QQuickWindow::frameSwapped);
    QTRY_VERIFY((fixture.panel.view().update(), frames.size() > 2));
    QCOMPARE(fixture.current(), last);
}

void MenuPanelTest::keepsCurrentRow()
{
    PanelFixture fixture;
    fixture.settle();
    const QAbstractItemModelTester tester(&fixture.panel.model());
    fixture.point(QStringLiteral("Settings…")); // where the pointer has been forgotten
    fixture.press(QStringLiteral("Home Down Down Down Down Down Down Down Right Down"));
    QCOMPARE(fixture.current(), QStringLiteral("Headphones"));
    const auto check = [&fixture](const QList<AudioOutputDevice>& outputs) {
        fixture.menu.state.outputs = outputs;
        fixture.panel.refresh();
        QCOMPARE(fixture.current(), QStringLiteral("Headphones"));
        QTRY_VERIFY(fixture.row(QStringLiteral("Headphones"))->state().focused);
        QCOMPARE(fixture.glass().height(), fixture.wholeHeight());
    };
    const AudioOutputDevice speakers{41, QStringLiteral("Speakers"), QString()};
    const AudioOutputDevice headphones{52, QStringLiteral("Headphones"), QString()};
    const AudioOutputDevice kitchen{60, QStringLiteral("Kitchen"), QString()};
    check({kitchen, speakers, headphones});
    check({headphones, kitchen});
    check({headphones});
    fixture.press(QStringLiteral("Return"));
    QCOMPARE(fixture.menu.told, QStringList(QStringLiteral("output 52")));
}

/// As a screen reader asks.
void MenuPanelTest::isHeard()
{
    PanelFixture fixture;
    fixture.settle();
    QAccessibleInterface* const menu = fixture.row(QStringLiteral("Quit Pellar"))->parent();
    QCOMPARE(menu->role(), QAccessible::PopupMenu);
    QVERIFY(QAccessible::queryAccessibleInterface(qApp)->indexOfChild(menu->parent()) >= 0);
    QCOMPARE(menu->childCount(), fixture.panel.model().rowCount());
    QCOMPARE(menu->child(0)->role(), QAccessible::StaticText);
    QCOMPARE(menu->child(2)->role(), QAccessible::Separator);
    QAccessibleInterface* const outputs = fixture.row(QStringLiteral("Audio Output"));
    QVERIFY(outputs->state().expandable && !outputs->state().expanded);
    QCOMPARE(outputs->role(), QAccessible::MenuItem);
    outputs->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(outputs->state().expanded);
    const auto inOrder = [&] {
        for (int i = 0; i < menu->childCount(); ++i) {
            if (menu->child(i)->text(QAccessible::Name) != fixture.panel.model().rows()[i].title()) {
                return false;
            }
        }
        return menu->childCount() == fixture.panel.model().rowCount();
    };
    QTRY_VERIFY(inOrder());
    const auto isOn = [&fixture](const char* title) {
        const QAccessible::State state = fixture.row(QString::fromUtf8(title))->state();
        return state.checkable && state.checked;
    };
    QVERIFY(isOn("Headphones") && !isOn("Speakers"));
    fixture.press(QStringLiteral("Down"));
    QVERIFY(menu->child(3)->state().focused);
    menu->child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(fixture.menu.told, QStringList(QStringLiteral("preview")));
}

void MenuPanelTest::showsWholeTitle()
{
    PanelFixture fixture;
    fixture.menu.state.title = QStringLiteral("A Title that Nobody Has Ever Sung to its End. ").repeated(3);
    fixture.panel.refresh();
    fixture.settle();
    const auto* const tip = fixture.panel.view().rootObject()->findChild<QQuickItem*>(QStringLiteral("tip"));
    fixture.point(QStringLiteral("Now Playing…"));
    QVERIFY(!tip->isVisible());
    fixture.point(fixture.panel.model().rows().first().title());
    QTRY_VERIFY(tip->isVisible());
    QVERIFY(tip->height() > 40); // on several lines
    fixture.point(QStringLiteral("Now Playing…"));
    QTRY_VERIFY(!tip->isVisible());
}

void MenuPanelTest::closesBesideIt()
{
    for (const auto& [button, reaches] : {std::pair(Qt::LeftButton, 0), std::pair(Qt::RightButton, 1)}) {
        PanelFixture fixture;
        fixture.settle();
        OtherWindow other;
        other.setGeometry(0, 0, 100, 100);
        other.show();
        QTest::mouseClick(&other, button, Qt::NoModifier, {5, 5});
        QCOMPARE(other.presses, reaches);
        fixture.settle();
        QCOMPARE(fixture.closed, 1);
        QTest::mouseClick(&other, Qt::LeftButton, Qt::NoModifier, {5, 5}); // let alone again
        QTRY_COMPARE(other.presses, reaches + 1);
    }
}

int main(int argc, char** argv)
{
    importQmlModules();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    MenuPanelTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "menu_panel_test.moc"
