#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/StatusItemPlacement.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QScreen>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/// The pill's window in the bar. What the mouse does to it is tried in a real session.
class StatusItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesItem();
    void remembersItsPlace();
    void keepsItsRightEdge();

private:
    FakeStatusBar _bar;
    MemoryDefaults _defaults;
};

void StatusItemTest::placesItem()
{
    const QRect first(0, 0, 1000, 800);
    const QRect second(1000, 200, 1000, 800);
    const QRect narrow(0, 0, 100, 800);
    const std::vector<std::tuple<QRect, double, int>> rows = {// screen, right inset, left edge
                                                              {first, 100, 715},          {second, 100, 1715},
                                                              {first, 5000, 0},           {first, -50, 815},
                                                              {first, std::nan(""), 815}, {narrow, 20, 0}};
    for (const auto& [screen, inset, left] : rows) {
        const QRect frame = StatusItemPlacement::frame(screen, {185, 28}, inset);
        QCOMPARE(frame, QRect(QPoint(left, screen.top()), QSize(185, 28)));
        const double again = StatusItemPlacement::rightInset(screen, frame);
        QCOMPARE(StatusItemPlacement::frame(screen, {185, 28}, again), frame);
    }
}

void StatusItemTest::remembersItsPlace()
{
    int left = 0;
    {
        StatusHostingView view;
        StatusItem item(_bar, _defaults, u"PellarPlayer"_s);
        item.bindableLength().setValue(185);
        item.setView(&view);
        left = view.x();
        Q_EMIT view.itemDragged(-37);
        Q_EMIT view.itemDragged(-3);
        QVERIFY(_defaults.values.isEmpty()); // not at every step
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
    StatusItem item(_bar, _defaults, u"PellarPlayer"_s);
    item.bindableLength().setValue(185);
    item.setView(&view);
    QCOMPARE(view.x(), left - 40);
    QCOMPARE(view.y(), view.screen()->geometry().top());
}

void StatusItemTest::keepsItsRightEdge()
{
    StatusHostingView view;
    StatusItem item(_bar, _defaults, u"PellarPlayer"_s);
    item.bindableLength().setValue(185);
    item.setView(&view);
    const int right = view.geometry().right();
    item.bindableLength().setValue(101);
    QCOMPARE(view.geometry().right(), right);
    QCOMPARE(view.size(), QSize(101, _bar.thickness()));
}

QTEST_MAIN(StatusItemTest)
#include "status_item_test.moc"
