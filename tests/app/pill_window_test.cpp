#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/StatusItemPlacement.h"
#include "ui/PillFixture.h"
#include "ui/QmlModules.h"

#include <QApplication>
#include <QtTest>

namespace {

/// The pill in its window, as the program builds it.
struct Window : PillFixture {
    Window()
    {
        view.setInitialProperties({{u"pill"_s, QVariant::fromValue(pill.get())}});
        view.setSource(QUrl(u"qrc:/Pellar/Pill/MenuBarPlayerView.qml"_s));
        item.bindableLength().setValue(pill->layout().size.width());
        item.bindableCorners().setValue({pill->layout().cornerRadius, pill->colors().background});
        item.setView(&view);
        pill->leave();
    }

    void composite(bool on)
    {
        engine.desktop.statusBar.composited = on;
        Q_EMIT engine.desktop.statusBar.compositingChanged();
    }

    StatusHostingView view;
    StatusItem item{engine.desktop.statusBar, engine.defaults, u"PellarPlayer"_s};
};

/// An "x" for each pixel of a row that has another colour than its first one, apart where they are.
QStringList runs(const QImage& image, QRect row)
{
    QString pixels;
    for (int x = row.left(); x <= row.right(); ++x) {
        pixels += image.pixel(x, row.top()) == image.pixel(row.topLeft()) ? u' ' : u'x';
    }
    return pixels.split(u' ', Qt::SkipEmptyParts);
}

} // namespace

/// At one scale of the screen.
class PillWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPaintedWhole()
    {
        Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&window.view));
        const double scale = window.view.devicePixelRatio();
        const QSize pill(qRound(185 * scale), qRound(28 * scale));
        const QImage image = window.view.grabWindow();
        const QPoint middle(pill.width() / 2, pill.height() / 2);
        const QColor border = image.pixelColor(middle.x(), 0);
        QVERIFY(border != image.pixelColor(middle.x(), qCeil(2 * scale)));
        QCOMPARE(image.pixelColor(middle.x(), pill.height() - 1), border);
        QCOMPARE(image.pixelColor(0, middle.y()), border);
        QCOMPARE(image.pixelColor(pill.width() - 1, middle.y()), border);

        const QRectF meter = window.pill->layout().visualizer;
        const QRect foot(
            QPoint(qRound(meter.left() * scale) - 2, qRound(meter.bottom() * scale) - qCeil(scale) - 1),
            QSize(qRound(meter.width() * scale) + 4, 1));
        QCOMPARE(runs(image, foot), QStringList(4, QString(qRound(2 * scale), u'x')));

        QTest::mouseClick(&window.view, Qt::LeftButton, {},
                          window.pill->layout().playButton.center().toPoint());
        QVERIFY(window.engine.desktop.scripts.take().contains(PlayerScripts::playPause(Player::appleMusic)));
    }

    void placesItem()
    {
        const QRect first(0, 0, 1000, 800);
        const QRect second(1000, 200, 1000, 800);
        for (const auto& [screen, inset, left] : {std::tuple(first, 100.0, 715),
                                                  {second, 100, 1715},
                                                  {first, 5000, 0},
                                                  {first, std::nan(""), 815}}) {
            const QRect frame = StatusItemPlacement::frame(screen, {185, 28}, inset);
            QCOMPARE(frame, QRect(left, screen.top(), 185, 28));
            const double again = StatusItemPlacement::rightInset(screen, frame);
            QCOMPARE(StatusItemPlacement::frame(screen, {185, 28}, again), frame);
        }
    }

    /// That it is remembered, too, is tried in a real session.
    void isDragged()
    {
        Window window;
        const int left = window.view.x();
        for (const int way : {-10000, 10000}) {
            Q_EMIT window.view.itemDragged(way);
            QVERIFY(window.view.screen()->geometry().contains(window.view.position()));
            Q_EMIT window.view.itemDragged(-way); // the pointer comes back, and the item is below it again
            QCOMPARE(window.view.x(), left);
        }
        const int right = window.view.geometry().right();
        window.item.bindableLength().setValue(101);
        QVERIFY(std::abs(window.view.geometry().right() - right) <= 2); // as it is rounded to whole pixels
    }

    void followsTheCompositor()
    {
        Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&window.view));
        for (int times = 0; times < 2; ++times) {
            QVERIFY(window.view.mask().isEmpty() && window.view.color().alpha() == 0);
            window.composite(false);
            QCOMPARE(window.view.mask().boundingRect(), QRect(0, 0, 185, 28));
            QVERIFY(!window.view.mask().contains(QPoint(1, 1)) && window.view.mask().contains(QPoint(4, 4)));
            QCOMPARE(window.view.grabWindow().pixelColor(0, 0).rgb(), window.pill->colors().background.rgb());
            window.composite(true);
        }
    }

    void forgetsThePressBelowAMenu()
    {
        Window window;
        QVERIFY(QTest::qWaitForWindowExposed(&window.view));
        window.view.rightClickHandler = [](const QMouseEvent&) {};
        const QPoint line = window.pill->layout().progress.center().toPoint();
        QTest::mousePress(&window.view, Qt::LeftButton, {}, line);
        QVERIFY(window.pill->isSeeking());
        QTest::mousePress(&window.view, Qt::RightButton, {}, line);
        QTest::mouseMove(&window.view, line + QPoint(30, 0));
        QVERIFY(!window.pill->isSeeking());
        QTest::mouseRelease(&window.view, Qt::LeftButton, {}, line + QPoint(30, 0));
        QCOMPARE(window.engine.desktop.scripts.take(), QStringList());
    }
};

int main(int argc, char** argv)
{
    importQmlModules();
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    int failed = 0;
    for (int percent = 100; percent <= 300; percent += 5) {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(percent / 100.0));
        QApplication application(argc, argv);
        PillWindowTest test;
        test.setObjectName(u"PillWindowTest, %1 %"_s.arg(percent));
        failed += QTest::qExec(&test, argc, argv);
    }
    return failed;
}

#include "pill_window_test.moc"
