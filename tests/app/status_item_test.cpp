#include "app/StatusHostingView.h"
#include "app/StatusItem.h"
#include "app/StatusItemPlacement.h"
#include "support/FakePlatform.h"
#include "support/MemoryDefaults.h"

#include <QScreen>
#include <QtTest>

using namespace Qt::Literals::StringLiterals;

/// The pill's window in the bar. What the mouse does to it is tried in a real session.
class StatusItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesItem()
    {
        const QRect first(0, 0, 1000, 800);
        const QRect second(1000, 200, 1000, 800);
        const QRect narrow(0, 0, 100, 800);
        const std::vector<std::tuple<QRect, double, int>> rows = {
            // screen, right inset, left edge
            {first, 100, 715}, {second, 100, 1715},        {first, 5000, 0},
            {first, -50, 815}, {first, std::nan(""), 815}, {narrow, 20, 0}};
        for (const auto& [screen, inset, left] : rows) {
            const QRect frame = StatusItemPlacement::frame(screen, {185, 28}, inset);
            QCOMPARE(frame, QRect(QPoint(left, screen.top()), QSize(185, 28)));
            const double again = StatusItemPlacement::rightInset(screen, frame);
            QCOMPARE(StatusItemPlacement::frame(screen, {185, 28}, again), frame);
        }
    }

    void remembersItsPlace()
    {
        const int edge = Item(*this).view.screen()->geometry().left();
        int left = 0;
        {
            Item item(*this);
            left = item.view.x();
            QCOMPARE(item.draggedBy(-37), left - 37);
            QVERIFY(_defaults.values.isEmpty()); // not at every step
            Q_EMIT item.view.itemDropped();
            QCOMPARE(item.draggedBy(-10000), edge);
            QCOMPARE(item.draggedBy(10000),
                     left - 37); // the pointer comes back, and the item is below it again
            item.draggedBy(-10000);
            Q_EMIT item.view.itemDropped();
            QCOMPARE(item.draggedBy(10), edge + 10);
            Q_EMIT item.view.itemDropped();
        }
        QCOMPARE(Item(*this).view.position(), QPoint(edge + 10, Item(*this).view.screen()->geometry().top()));
    }

    void keepsItsRightEdge()
    {
        Item item(*this);
        const int right = item.view.geometry().right();
        item.item.bindableLength().setValue(101);
        QCOMPARE(item.view.geometry().right(), right);
        QCOMPARE(item.view.size(), QSize(101, _bar.thickness()));
    }

private:
    /// The item with a window of the pill's size.
    struct Item {
        explicit Item(StatusItemTest& test) : item(test._bar, test._defaults, u"PellarPlayer"_s)
        {
            item.bindableLength().setValue(185);
            item.setView(&view);
        }
        int draggedBy(int way)
        {
            Q_EMIT view.itemDragged(way);
            return view.x();
        }

        StatusHostingView view;
        StatusItem item;
    };

    FakeStatusBar _bar;
    MemoryDefaults _defaults;
};

QTEST_MAIN(StatusItemTest)
#include "status_item_test.moc"
