#include "ui/PillColors.h"
#include "ui/PillLayout.h"
#include "ui/Symbol.h"

#include <QTest>

class PillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void laysOutEveryCombination();
    void findsZone_data();
    void findsZone();
    void drawsSymbolsInTheirSquare_data();
    void drawsSymbolsInTheirSquare();
    void canBeRead();
};

void PillTest::laysOutEveryCombination()
{
    for (int flags = 0; flags < 8; ++flags) {
        const PillElements elements{
            .previousButton = (flags & 1) != 0, .nextButton = (flags & 2) != 0, .title = (flags & 4) != 0};
        const QRectF pill(
            0, 0, 40 + 24 * (elements.previousButton + elements.nextButton) + 61 * elements.title, 28);
        const PillLayout layout = PillLayout::make(pill.size(), elements);
        QCOMPARE(layout.previousButton.isEmpty(), !elements.previousButton);
        QCOMPARE(layout.nextButton.isEmpty(), !elements.nextButton);
        QCOMPARE(layout.title.isEmpty(), !elements.title);
        double edge = 0;
        for (const QRectF& frame :
             {layout.previousButton, layout.playButton, layout.nextButton, layout.title}) {
            if (!frame.isEmpty()) {
                QVERIFY2(frame.left() >= edge && pill.contains(frame), qPrintable(QString::number(flags)));
                edge = frame.right();
                QVERIFY(!frame.intersects(layout.progress));
            }
        }
        QVERIFY(pill.contains(layout.progress));
        QVERIFY(!elements.title || layout.title.width() >= 50);
    }
    // Narrower than its contents: nothing turns inside out.
    const PillLayout tiny = PillLayout::make({10, 10}, {});
    QVERIFY(tiny.title.width() >= 0 && tiny.progress.width() >= 0 && tiny.cornerRadius <= 5);
}

void PillTest::findsZone_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QString>("zone");
    const PillLayout layout = PillLayout::make({185, 28}, {});
    QTest::newRow("previous") << layout.previousButton.center() << QStringLiteral("prev");
    QTest::newRow("play") << layout.playButton.center() << QStringLiteral("play");
    QTest::newRow("next") << layout.nextButton.center() << QStringLiteral("next");
    QTest::newRow("margin") << layout.nextButton.bottomRight() + QPointF(3.9, 3.9) << QStringLiteral("next");
    QTest::newRow("beyond the margin") << layout.nextButton.bottomRight() + QPointF(4.1, 0) << QString();
    QTest::newRow("title") << layout.title.center() << QString();
    QTest::newRow("outside") << QPointF(-20, -20) << QString();
}

void PillTest::findsZone()
{
    QFETCH(QPointF, point);
    QTEST(PillLayout::make({185, 28}, {}).zoneAt(point).value_or(QString()), "zone");
    const PillLayout bare = PillLayout::make({185, 28}, {.previousButton = false, .nextButton = false});
    QVERIFY(bare.zoneAt(point).value_or(QStringLiteral("play")) == QStringLiteral("play"));
}

void PillTest::drawsSymbolsInTheirSquare_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"play.fill", "pause.fill", "forward.fill", "backward.fill"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

void PillTest::drawsSymbolsInTheirSquare()
{
    QFETCH(QString, name);
    const QRectF bounds = symbolOutline(name, 12).boundingRect();
    QVERIFY(QRectF(0, 0, 12, 12).contains(bounds));
    QVERIFY(bounds.width() > 6 && bounds.height() > 6);
    QVERIFY(std::abs(bounds.center().x() - 6) < 1 && std::abs(bounds.center().y() - 6) < 0.5);
    QVERIFY(symbolOutline(QStringLiteral("no.such"), 12).isEmpty());
}

/// Contrast of 4.5 : 1 for text and 3 : 1 for the progress, as WCAG 2 asks for.
void PillTest::canBeRead()
{
    const auto over = [](const QColor& ink, const QColor& ground) {
        const auto mix = [&](float a, float b) { return a * ink.alphaF() + b * (1 - ink.alphaF()); };
        return QColor::fromRgbF(mix(ink.redF(), ground.redF()), mix(ink.greenF(), ground.greenF()),
                                mix(ink.blueF(), ground.blueF()));
    };
    const auto luminance = [](const QColor& colour) {
        const auto linear = [](double c) {
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
               0.0722 * linear(colour.blueF());
    };
    const auto contrast = [&](const QColor& a, const QColor& b) {
        const double brighter = std::max(luminance(a), luminance(b));
        const double darker = std::min(luminance(a), luminance(b));
        return (brighter + 0.05) / (darker + 0.05);
    };
    for (const bool isDark : {false, true}) {
        const PillColors colors = PillColors::forDesktop(isDark);
        QVERIFY(contrast(over(colors.text, colors.background), colors.background) > 7);
        QVERIFY(contrast(over(colors.dimmedText, colors.background), colors.background) > 4.5);
        QVERIFY(contrast(over(colors.fill, colors.background), over(colors.track, colors.background)) > 3);
    }
}

QTEST_GUILESS_MAIN(PillTest)
#include "pill_test.moc"
