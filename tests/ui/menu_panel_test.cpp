#include "support/FakeAppearance.h"
#include "support/FakePlatform.h"
#include "ui/MenuFixture.h"
#include "ui/QmlModules.h"
#include "ui/menu/MenuPanelFrame.h"
#include "ui/menu/PellarMenuModel.h"
#include "ui/menu/PellarMenuPanel.h"

#include <QApplication>
#include <QQuickView>
#include <QScreen>
#include <QTest>

#include <cmath>

namespace {

const QRect pill(500, 0, 185, 28);

/// A panel on a desktop where time is moved by hand.
struct PanelFixture {
    PanelFixture()
    {
        panel.onClose = [this] { ++closed; };
        panel.present();
    }

    void settle() { desktop.runLoop.advance(0.4); }

    /// The glass without its shadow.
    QRect glass()
    {
        const int shadow = static_cast<int>(panel.model().shadowExtent());
        return panel.view().geometry().adjusted(shadow, shadow, -shadow, -shadow);
    }

    const MenuPanelRow* row(const QString& title)
    {
        for (const MenuPanelRow& candidate : panel.model().layout().rows) {
            if (candidate.title() == title) {
                return &candidate;
            }
        }
        return nullptr;
    }

    void click(const QString& title)
    {
        const double shadow = panel.model().shadowExtent();
        const QPointF middle = row(title)->frame.center() - QPointF(0, panel.model().scroll());
        QTest::mouseClick(&panel.view(), Qt::LeftButton, Qt::NoModifier,
                          (middle + QPointF(shadow, shadow)).toPoint());
    }

    FakePlatform desktop;
    FakeAppearance appearance;
    MenuFixture menu;
    int closed = 0;
    PellarMenuPanel panel{PellarMenuPanel::Desktop{
                              .runLoop = desktop.runLoop, .bar = desktop.statusBar, .appearance = appearance},
                          [this] { return menu.rows(); }, pill};
};

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
    void placesPanel_data();
    void placesPanel();
    void animates_data();
    void animates();
    void unfoldsAndFolds();
    void staysPinned();
    void obeysKeys_data();
    void obeysKeys();
    void choosesByPointer();
    void scrolls();
    void closesBesideIt_data();
    void closesBesideIt();
};

void MenuPanelTest::placesPanel_data()
{
    QTest::addColumn<QRectF>("screen");
    QTest::addColumn<QSizeF>("contents");
    QTest::addColumn<QRectF>("expected");
    const QRectF screen(0, 0, 1280, 800);
    QTest::newRow("below, right edges in line") << screen << QSizeF(220, 300) << QRectF(465, 34, 220, 300);
    QTest::newRow("too tall") << screen << QSizeF(220, 900) << QRectF(465, 34, 220, 758);
    QTest::newRow("too wide") << screen << QSizeF(700, 300) << QRectF(8, 34, 700, 300);
    QTest::newRow("second screen") << QRectF(400, 0, 900, 600) << QSizeF(300, 300)
                                   << QRectF(408, 34, 300, 300);
    QTest::newRow("no room at all") << QRectF(0, 0, 1280, 20) << QSizeF(220, 300) << QRectF(465, 34, 220, 0);
}

void MenuPanelTest::placesPanel()
{
    QFETCH(QRectF, screen);
    QFETCH(QSizeF, contents);
    QTEST(MenuPanelFrame::open(MenuPanelPin::below(pill), contents, screen).rect, "expected");
}

void MenuPanelTest::animates_data()
{
    // The cubic curves (0.25, 1) (0.5, 1) and (0.5, 0) (0.75, 0), solved by bisection.
    QTest::addColumn<double>("progress");
    QTest::addColumn<double>("opening");
    QTest::addColumn<double>("closing");
    QTest::newRow("start") << 0.0 << 0.0 << 1.0;
    QTest::newRow("tenth") << 0.1 << 0.3473 << 0.9997;
    QTest::newRow("quarter") << 0.25 << 0.6886 << 0.9939;
    QTest::newRow("half") << 0.5 << 0.9341 << 0.9341;
    QTest::newRow("three quarters") << 0.75 << 0.9939 << 0.6886;
    QTest::newRow("end") << 1.0 << 1.0 << 0.0;
}

void MenuPanelTest::animates()
{
    QFETCH(double, progress);
    QFETCH(double, opening);
    QFETCH(double, closing);
    const MenuPanelFrame whole{.rect = QRectF(465, 34, 220, 300), .opacity = 1};
    const auto check = [&whole](const MenuPanelFrame& frame, double share) {
        QCOMPARE(frame.rect.topRight(), whole.rect.topRight());
        QCOMPARE(frame.rect.width(), whole.rect.width());
        QVERIFY2(std::abs(frame.rect.height() - 300 * share) < 0.3,
                 qPrintable(QString::number(frame.rect.height())));
        QVERIFY(std::abs(frame.opacity - share) < 0.001);
    };
    check(MenuPanelFrame::opening(whole, progress), opening);
    check(MenuPanelFrame::closing(whole, progress), closing);
}

void MenuPanelTest::unfoldsAndFolds()
{
    PanelFixture fixture;
    const int whole = static_cast<int>(fixture.panel.model().layout().size.height());
    QVERIFY(fixture.panel.isVisible());
    QVERIFY(fixture.glass().height() < 2);
    fixture.desktop.runLoop.advance(0.16);
    QVERIFY(fixture.glass().height() > whole / 2 && fixture.glass().height() < whole);
    fixture.desktop.runLoop.advance(0.18);
    QCOMPARE(fixture.glass().height(), whole);
    QCOMPARE(fixture.panel.view().opacity(), 1.0);
    QCOMPARE(fixture.desktop.runLoop.pending(), 0); // nothing moves any more

    fixture.panel.close();
    fixture.desktop.runLoop.advance(0.2);
    QVERIFY(fixture.panel.isVisible() && fixture.glass().height() < whole);
    fixture.panel.close(); // does not begin anew
    fixture.desktop.runLoop.advance(0.06);
    QVERIFY(!fixture.panel.isVisible());
    QCOMPARE(fixture.closed, 1);
}

void MenuPanelTest::staysPinned()
{
    PanelFixture fixture;
    fixture.panel.model().choose(fixture.row(QStringLiteral("Sleep Timer"))->key);
    fixture.desktop.runLoop.advance(0.05);
    const int growing = fixture.glass().height();
    fixture.desktop.runLoop.advance(0.1);
    QVERIFY(fixture.glass().height() > growing); // the change of size has not cut the opening short
    fixture.settle();
    const QRect tall = fixture.glass();
    QCOMPARE(tall.height(), static_cast<int>(fixture.panel.model().layout().size.height()));
    QCOMPARE(tall.top(), pill.top() + 28 + 6);
    QCOMPARE(tall.right(), pill.right());
    fixture.click(QStringLiteral("Sleep Timer"));
    QVERIFY(fixture.glass().height() < tall.height());
    QCOMPARE(fixture.glass().topRight(), tall.topRight());
}

void MenuPanelTest::obeysKeys_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("hovered"); ///< title of the row
    QTest::addColumn<QString>("told");
    const auto row = [](const char* keys, const char* hovered, const char* told) {
        QTest::newRow(keys) << QString::fromLatin1(keys) << QString::fromUtf8(hovered)
                            << QString::fromUtf8(told);
    };
    row("Down", "Now Playing…", "");
    row("Up", "Quit Pellar", "");
    row("End Down", "Now Playing…", "");
    row("Home Down Return", "Open in Music App", "open");
    row("Return", "", "");
    row("Space", "", "preview");
    row("Up Up Up Up Right", "Apple Music", "");
    row("Up Up Up Up Right Down Return", "Spotify", "source 2");
    row("Up Up Up Up Right Down Left", "Audio Sources", "");
    row("Up Up Up Up Return Up", "Power Mode (Normal)", "");
    row("Up Right", "Quit Pellar", "");
    row("A", "", "");
}

void MenuPanelTest::obeysKeys()
{
    QFETCH(QString, keys);
    PanelFixture fixture;
    fixture.settle();
    for (const QString& name : keys.split(u' ')) {
        QTest::keyClick(&fixture.panel.view(), QKeySequence(name)[0].key());
    }
    const MenuPanelRow* const row =
        fixture.panel.model().layout().rowWithKey(fixture.panel.model().hoveredKey());
    QTEST(row != nullptr ? row->title() : QString(), "hovered");
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
    fixture.click(QStringLiteral("System Audio"));
    QCOMPARE(fixture.menu.told, QStringList(QStringLiteral("source 4")));
    fixture.click(QStringLiteral("Quit Pellar")); // it is on its way out
    QCOMPARE(fixture.menu.told.size(), 1);
}

void MenuPanelTest::scrolls()
{
    PellarMenuModel model(MenuFixture().rows());
    model.setVisibleHeight(120);
    model.pressKey(Qt::Key_Up);
    const auto end = [&model] { return model.layout().size.height() - 120; };
    QCOMPARE(model.scroll(), end());
    model.hover(model.layout().rows.last().frame.center() - QPointF(0, end()));
    QCOMPARE(model.hoveredKey(), model.layout().rows.last().key);
    model.hover(QPointF(50, 130)); // below what can be seen
    QVERIFY(model.hoveredKey().isEmpty());

    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up, Qt::Key_Return}) {
        model.pressKey(key);
    }
    const QRectF sources = model.layout().expandedFrame.translated(0, -model.scroll());
    QVERIFY(sources.top() >= 0 && sources.top() < 30 && sources.bottom() > 100);
    model.scrollBy(1000);
    QCOMPARE(model.scroll(), end());
    model.scrollBy(-1000);
    QCOMPARE(model.scroll(), 0.0);
}

void MenuPanelTest::closesBesideIt_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<int>("presses"); ///< that the window below gets
    QTest::newRow("left") << Qt::LeftButton << 0;
    QTest::newRow("right") << Qt::RightButton << 1;
}

void MenuPanelTest::closesBesideIt()
{
    QFETCH(Qt::MouseButton, button);
    PanelFixture fixture;
    fixture.settle();
    OtherWindow other;
    other.setGeometry(0, 0, 100, 100);
    other.show();
    QTest::mousePress(&other, button, Qt::NoModifier, {5, 5});
    QTEST(other.presses, "presses");
    QTest::mouseRelease(&other, button, Qt::NoModifier, {5, 5});
    fixture.settle();
    QCOMPARE(fixture.closed, 1);
    QTest::mouseClick(&other, Qt::LeftButton, Qt::NoModifier, {5, 5}); // let alone again
    QTRY_VERIFY(other.presses > 0);
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
