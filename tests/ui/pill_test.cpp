#include "prefs/PellarTheme.h"
#include "prefs/PillVisibilityManager.h"
#include "support/MemoryDefaults.h"
#include "ui/controls/Marquee.h"
#include "ui/controls/Symbol.h"
#include "ui/pill/PillColors.h"
#include "ui/pill/PillLayout.h"
#include "ui/pill/VisualizerView.h"

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
    void marquee_data();
    void marquee();
    void barsLieBetweenPixels();
    void canBeRead_data();
    void canBeRead();
};

/// The row fills the width that the settings say, to the point.
void PillTest::laysOutEveryCombination()
{
    MemoryDefaults defaults;
    PillVisibilityManager visibility(defaults);
    for (int flags = 0; flags < 32; ++flags) {
        const auto has = [flags](int bit) { return (flags >> bit & 1) != 0; };
        const PillElements elements{has(0), has(1), has(2), has(3), has(4)};
        visibility.showAlbumArt = elements.albumArt;
        visibility.showVisualizer = elements.visualizer;
        visibility.showPrevButton = elements.previousButton;
        visibility.showNextButton = elements.nextButton;
        visibility.showTitle = elements.title;
        const QRectF pill(0, 0, visibility.preferredPillWidth(), 28);
        const PillLayout layout = PillLayout::make(pill.size(), elements);
        QCOMPARE(layout.albumArt.isEmpty(), !elements.albumArt);
        QCOMPARE(layout.visualizer.isEmpty(), !elements.visualizer);
        QCOMPARE(layout.previousButton.isEmpty(), !elements.previousButton);
        QCOMPARE(layout.nextButton.isEmpty(), !elements.nextButton);
        QCOMPARE(layout.title.isEmpty(), !elements.title);
        double edge = 0;
        for (const QRectF& frame : {layout.albumArt, layout.visualizer, layout.previousButton,
                                    layout.playButton, layout.nextButton, layout.title}) {
            if (!frame.isEmpty()) {
                const double gap = frame.left() - edge;
                QVERIFY2(gap >= 3 && gap <= 12, qPrintable(QString::number(flags)));
                edge = frame.right();
                QVERIFY(pill.contains(frame) && !frame.intersects(layout.progress));
            }
        }
        const double end = pill.right() - edge;
        QVERIFY2(end >= 8 && end <= 12, qPrintable(QString::number(flags)));
        QVERIFY(pill.contains(layout.progress) && layout.progress.height() == 3);
        QVERIFY(!elements.title || layout.title.width() >= 50);
    }
    // Narrower than its contents: nothing turns inside out.
    const PillLayout tiny = PillLayout::make({10, 10}, {});
    QVERIFY(tiny.title.width() >= 0 && tiny.progress.width() >= 0 && tiny.cornerRadius <= 5);
    QCOMPARE(tiny.progressFraction({5, 5}), 0.0);
}

void PillTest::findsZone_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QString>("zone");
    const PillLayout layout = PillLayout::make({185, 28}, {});
    QTest::newRow("cover") << layout.albumArt.center() << QStringLiteral("art");
    QTest::newRow("visualizer") << layout.visualizer.center() << QString();
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
    const PillLayout bare =
        PillLayout::make({185, 28}, {.albumArt = false, .previousButton = false, .nextButton = false});
    QVERIFY(bare.zoneAt(point).value_or(QStringLiteral("play")) == QStringLiteral("play"));
}

void PillTest::drawsSymbolsInTheirSquare_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"play.fill", "pause.fill", "forward.fill", "backward.fill", "music.note"}) {
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

void PillTest::marquee_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<double>("offset");
    QTest::newRow("shown") << 0.0 << 0.0; // a text of 85 points: a lap of 120 in 4 seconds
    QTest::newRow("at rest") << 0.6 << 0.0;
    QTest::newRow("on its way") << 1.6 << -30.0;
    QTest::newRow("nearly round") << 4.599 << -119.97;
    QTest::newRow("next lap, without a rest") << 5.1 << -15.0;
    QTest::newRow("clock set back") << -3.0 << 0.0;
}

void PillTest::marquee()
{
    QFETCH(double, time);
    QFETCH(double, offset);
    QVERIFY(std::abs(Marquee::offset(time, 85) - offset) < 1e-9);
}

void PillTest::barsLieBetweenPixels()
{
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        const QSize size(qRound(14 * scale), qRound(11 * scale));
        const auto bars = VisualizerView::barRects({2, 11, 5.3, 20.0 / 3}, size, scale);
        for (std::size_t i = 0; i < bars.size(); ++i) {
            QVERIFY(bars[i].left() == std::floor(bars[i].left()) &&
                    bars[i].width() == std::floor(bars[i].width()));
            QCOMPARE(bars[i].bottom(), static_cast<double>(size.height()));
            QVERIFY(bars[i].width() >= 2 &&
                    QRectF(QPointF(), size).adjusted(0, -0.5, 0, 0).contains(bars[i]));
            QVERIFY(i == 0 || bars[i].left() - bars[i - 1].right() == bars[1].left() - bars[0].right());
        }
    }
}

void PillTest::canBeRead_data()
{
    QTest::addColumn<bool>("isDark");
    QTest::addColumn<std::optional<QColor>>("tint");
    for (const bool isDark : {false, true}) {
        const auto row = [isDark](const char* name, const std::optional<QColor>& tint) {
            QTest::addRow("%s on %s", name, isDark ? "dark" : "light") << isDark << tint;
        };
        row("neutral", std::nullopt);
        row("midnight", staticTint(PellarTheme::midnight));
        row("warmth", staticTint(PellarTheme::warmth));
        row("tide", staticTint(PellarTheme::tide));
        row("dusk", staticTint(PellarTheme::dusk));
        row("of a black cover", QColor::fromHsvF(0, 0.45F, 0.55F));
        row("of a yellow cover", QColor::fromHsvF(0.166F, 1, 0.78F));
        row("of a blue cover", QColor::fromHsvF(0.666F, 1, 0.55F));
    }
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
    QFETCH(bool, isDark);
    QFETCH(std::optional<QColor>, tint);
    const PillColors colors = PillColors::forDesktop(isDark, tint);
    const QColor& ground = colors.background;
    QVERIFY(contrast(over(colors.text, ground), ground) > 7);
    QVERIFY(contrast(over(colors.dimmedText, ground), ground) > 4.5);
    QVERIFY(contrast(over(colors.bars, ground), ground) > 3);
    QVERIFY(contrast(over(colors.fill, ground), over(colors.track, ground)) >= 2.99);
    for (const QColor& lit : {over(colors.highlight, ground), over(colors.pressed, ground)}) {
        QVERIFY(contrast(over(colors.text, lit), lit) > 4.5);
        QVERIFY(contrast(lit, ground) > 1.15);
    }
    QVERIFY(colors.highlight != colors.pressed);
}

QTEST_GUILESS_MAIN(PillTest)
#include "pill_test.moc"
