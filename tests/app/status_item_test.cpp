#include "app/SingleInstance.h"
#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/StatusItemPlacement.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QMenu>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class StatusItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesItem_data();
    void placesItem();
    void remembersItsPlace();
    void keepsItsRightEdge();
    void routesMouse();
    void prefersRightClickHandler();
    void runsOnce();
};

void StatusItemTest::placesItem_data()
{
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<double>("inset");
    QTest::addColumn<int>("left");
    const QRect screen(0, 0, 1000, 800);
    QTest::newRow("as stored") << screen << 100.0 << 715;
    QTest::newRow("second screen") << QRect(1000, 200, 1000, 800) << 100.0 << 1715;
    QTest::newRow("off the left") << screen << 5000.0 << 0;
    QTest::newRow("off the right") << screen << -50.0 << 815;
    QTest::newRow("not a number") << screen << std::nan("") << 815;
    QTest::newRow("screen too narrow") << QRect(0, 0, 100, 800) << 20.0 << 0;
}

void StatusItemTest::placesItem()
{
    QFETCH(QRect, screen);
    QFETCH(double, inset);
    const QRect frame = StatusItemPlacement::frame(screen, {185, 28}, inset);
    QTEST(frame.left(), "left");
    QCOMPARE(frame.top(), screen.top());
    QCOMPARE(frame.size(), QSize(185, 28));
    const QRect again =
        StatusItemPlacement::frame(screen, {185, 28}, StatusItemPlacement::rightInset(screen, frame));
    QCOMPARE(again, frame);
}

void StatusItemTest::remembersItsPlace()
{
    FakeStatusBar bar;
    MemoryDefaults defaults;
    int left = 0;
    {
        StatusHostingView view;
        StatusItem item(bar, defaults, QStringLiteral("PellarPlayer"));
        item.bindableLength().setValue(185);
        item.setView(&view);
        left = view.x();
        Q_EMIT view.itemDragged(-37);
        Q_EMIT view.itemDragged(-3);
        QVERIFY(defaults.values.isEmpty()); // not at every step
        Q_EMIT view.itemDropped();
        QCOMPARE(view.x(), left - 40);
        Q_EMIT view.itemDragged(-10000);
        QCOMPARE(view.x(), view.screen()->geometry().left());
        Q_EMIT view.itemDragged(10000); // the pointer comes back, and the item is below it again
        QCOMPARE(view.x(), left - 40);
        Q_EMIT view.itemDragged(-10000);
        Q_EMIT view.itemDropped();
        Q_EMIT view.itemDragged(10);
        QCOMPARE(view.x(), view.screen()->geometry().left() + 10);
        Q_EMIT view.itemDragged(left - 50 - view.screen()->geometry().left());
        Q_EMIT view.itemDropped();
    }
    StatusHostingView view;
    StatusItem item(bar, defaults, QStringLiteral("PellarPlayer"));
    item.bindableLength().setValue(185);
    item.setView(&view);
    QCOMPARE(view.x(), left - 40);
    QCOMPARE(view.y(), view.screen()->geometry().top());
}

void StatusItemTest::keepsItsRightEdge()
{
    FakeStatusBar bar;
    MemoryDefaults defaults;
    StatusHostingView view;
    StatusItem item(bar, defaults, QStringLiteral("PellarPlayer"));
    item.bindableLength().setValue(185);
    item.setView(&view);
    const int right = view.geometry().right();
    item.bindableLength().setValue(101);
    QCOMPARE(view.geometry().right(), right);
    QCOMPARE(view.width(), 101);
    QCOMPARE(view.height(), bar.thickness());
}

void StatusItemTest::routesMouse()
{
    StatusHostingView view;
    view.resize(185, 28);
    view.show();
    QSignalSpy dragged(&view, &StatusHostingView::itemDragged);
    QSignalSpy dropped(&view, &StatusHostingView::itemDropped);
    for (const auto modifier : {Qt::NoModifier, Qt::ControlModifier, Qt::MetaModifier, Qt::ShiftModifier}) {
        QTest::mousePress(&view, Qt::LeftButton, modifier, {20, 10});
        QTest::mouseMove(&view, {10, 10});
        QTest::mouseRelease(&view, Qt::LeftButton, Qt::NoModifier, {10, 10});
    }
    int way = 0;
    for (const auto& signal : dragged) {
        way += signal[0].toInt();
    }
    QCOMPARE(way, -20);
    QCOMPARE(dropped.count(), 2);
}

void StatusItemTest::prefersRightClickHandler()
{
    StatusHostingView view;
    view.resize(185, 28);
    view.show();
    int menus = 0;
    int clicks = 0;
    view.contextMenuProvider = [&] {
        ++menus;
        auto menu = std::make_unique<QMenu>();
        menu->addAction(QStringLiteral("row"));
        return menu;
    };
    QTest::mouseClick(&view, Qt::RightButton);
    QCOMPARE(menus, 1);
    QTRY_VERIFY(QApplication::activePopupWidget() != nullptr);
    QApplication::activePopupWidget()->close();
    view.rightClickHandler = [&](const QMouseEvent&) { ++clicks; };
    QTest::mouseClick(&view, Qt::RightButton);
    QCOMPARE(menus, 1);
    QCOMPARE(clicks, 1);
}

void StatusItemTest::runsOnce()
{
    const QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder.path()));
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    auto first = std::make_unique<SingleInstance>();
    QVERIFY(first->isFirst());
    QVERIFY(!SingleInstance().isFirst());
    first.reset();
    QVERIFY(SingleInstance().isFirst());
}

QTEST_MAIN(StatusItemTest)
#include "status_item_test.moc"
