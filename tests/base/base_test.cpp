#include "base/Decimal.h"
#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "base/SerialQueue.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

class BaseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parsesDecimal_data();
    void parsesDecimal();
    void writesDecimal_data();
    void writesDecimal();
    void notifies();
    void survivesObserverThatDies();
    void runsSerially();
    void firesWhileContextLives();
};

void BaseTest::parsesDecimal_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");
    const auto row = [](const char* text, double value) {
        QTest::newRow(text) << QString::fromUtf8(text) << value;
    };
    row("215.5", 215.5);
    row("215000", 215000);
    row("-3", -3);
    row("+2.5", 2.5);
    row("1e3", 1000);
    row("", 0);
    row(" 12.0", 0);
    row("12.0 ", 0);
    row("\t1", 0);
    row("12,5", 0);
    row("12.5s", 0);
    row("+-1", 0);
    row("nan", 0);
    row("inf", 0);
    row("1e999", 0);
    row("٣", 0);
    row("missing value", 0);
}

void BaseTest::parsesDecimal()
{
    QFETCH(QString, text);
    QTEST(parseDecimal(text), "value");
}

void BaseTest::writesDecimal_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* text, double value) {
        QTest::newRow(text) << value << QString::fromUtf8(text);
    };
    row("42.5", 42.5);
    row("90.0", 90);
    row("0.0", 0);
    row("-1.25", -1.25);
    row("0.1", 0.1);
    row("100000.0", 100000);
    row("0.0001", 0.0001);
    row("1.0e+16", 1e16);
    row("187.99999999999997", 187.99999999999997);
    row("1.0e+300", 1e300);
    row("1.5e-09", 1.5e-9);
    row("inf", std::numeric_limits<double>::infinity());
}

void BaseTest::writesDecimal()
{
    QFETCH(double, value);
    QTEST(decimalText(value), "text");
    if (std::isfinite(value)) {
        QCOMPARE(parseDecimal(decimalText(value)), value);
    }
}

void BaseTest::notifies()
{
    NotificationCenter center;
    QObject context;
    QStringList heard;
    center.observe(QStringLiteral("a"), &context, [&](const QVariantMap& info) {
        heard << QStringLiteral("first ") + info[QStringLiteral("k")].toString();
        // Registered while posting: from the next time on.
        center.observe(QStringLiteral("a"), &context,
                       [&](const QVariantMap&) { heard << QStringLiteral("late"); });
    });
    center.observe(QStringLiteral("a"), &context,
                   [&](const QVariantMap&) { heard << QStringLiteral("second"); });
    center.post(QStringLiteral("b"));
    center.post(QStringLiteral("a"), {{QStringLiteral("k"), 1}});
    QCOMPARE(heard, QStringList({QStringLiteral("first 1"), QStringLiteral("second")}));
    center.post(QStringLiteral("a"));
    QCOMPARE(heard.last(), QStringLiteral("late"));
}

void BaseTest::survivesObserverThatDies()
{
    NotificationCenter center;
    auto context = std::make_unique<QObject>();
    int heard = 0;
    center.observe(QStringLiteral("a"), this, [&](const QVariantMap&) { context.reset(); });
    center.observe(QStringLiteral("a"), context.get(), [&](const QVariantMap&) { ++heard; });
    center.post(QStringLiteral("a"));
    center.post(QStringLiteral("a"));
    QCOMPARE(heard, 0);
}

void BaseTest::runsSerially()
{
    QList<int> order;
    {
        SerialQueue queue(QStringLiteral("test"));
        for (int i = 0; i < 500; ++i) {
            queue.async([&order, i] { order << i; }); // unguarded: only safe if nothing overlaps
        }
    }
    QCOMPARE(order.size(), 500);
    QVERIFY(std::is_sorted(order.begin(), order.end()));
}

void BaseTest::firesWhileContextLives()
{
    EventLoop loop;
    auto context = std::make_unique<QObject>();
    int once = 0;
    int often = 0;
    loop.after(0, context.get(), [&] { ++once; });
    QCOMPARE(once, 0); // never inside the call
    auto timer = loop.every(0.005, context.get(), [&] { ++often; });
    QTRY_VERIFY(once == 1 && often >= 3);
    timer.reset();
    const int stopped = often;
    bool isLater = false;
    loop.after(0.05, this, [&] { isLater = true; });
    loop.after(0.02, context.get(), [&] { ++once; });
    context.reset();
    QTRY_VERIFY(isLater);
    QCOMPARE(often, stopped);
    QCOMPARE(once, 1);
}

QTEST_GUILESS_MAIN(BaseTest)
#include "base_test.moc"
