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
    void drawsSymbolsInTheirSquare();
    void marquee_data();
    void marquee();
    void barsLieBetweenPixels();
    void canBeRead_data();
    void canBeRead();
};

/// The row fills the width that the settings say: the line ends where what is seen does, as far from both
/// ends.
void PillTest::laysOutEveryCombination()
{
    MemoryDefaults defaults;
    PillVisibilityManager shown(defaults);
    for (int flags = 0; flags < 32; ++flags) {
        int bit = 1;
        for (auto* const flag : {&shown.showAlbumArt, &shown.showVisualizer, &shown.showPrevButton,
                                 &shown.showNextButton, &shown.showTitle}) {
            *flag = (flags & bit) != 0;
            bit *= 2;
        }
        const QRectF pill(0, 0, shown.preferredPillWidth(), 28);
        const PillLayout layout = PillLayout::make(pill.size(), {.albumArt = shown.showAlbumArt,
                                                                 .visualizer = shown.showVisualizer,
                                                                 .previousButton = shown.showPrevButton,
                                                                 .nextButton = shown.showNextButton,
                                                                 .title = shown.showTitle});
        const std::pair<QRectF, bool> parts[] = {
            {layout.albumArt, shown.showAlbumArt},         {layout.visualizer, shown.showVisualizer},
            {layout.previousButton, shown.showPrevButton}, {layout.playButton, true},
            {layout.nextButton, shown.showNextButton},     {layout.title, shown.showTitle}};
        std::optional<double> edge;
        const QByteArray name = QByteArray::number(flags, 2);
        for (const auto& [frame, isShown] : parts) {
            QVERIFY2(frame.isEmpty() != isShown, name);
            if (isShown) {
                const double gap = edge ? frame.left() - *edge : 3;
                QVERIFY2(gap >= 3 && gap <= 10 && pill.contains(frame) && !frame.intersects(layout.progress),
                         name);
                edge = frame.right();
            }
        }
        QVERIFY2(pill.contains(layout.progress) && layout.progress.height() == 3, name);
        QVERIFY2(layout.progress.center().x() == pill.center().x(), name);
        QVERIFY2(!shown.showTitle || layout.title.right() == layout.progress.right(), name);
        QVERIFY2(!shown.showTitle || layout.title.width() >= 50, name);
        QVERIFY2(!shown.showAlbumArt || std::abs(layout.albumArt.left() - layout.progress.left()) <= 0.5,
                 name);
        QVERIFY2(!shown.showNextButton || shown.showTitle ||
                     std::abs(layout.nextButton.right() - 2 - layout.progress.right()) <= 0.5,
                 name);
    }
    // Narrower than its contents: nothing turns inside out.
    const PillLayout tiny = PillLayout::make({10, 10}, {});
    QVERIFY(tiny.title.width() >= 0 && tiny.progress.width() <= 10 && tiny.cornerRadius <= 5);
}

void PillTest::drawsSymbolsInTheirSquare()
{
    for (const char* name : {"play.fill", "pause.fill", "forward.fill", "backward.fill", "music.note"}) {
        const QRectF bounds = symbolOutline(QString::fromLatin1(name), 12).boundingRect();
        QVERIFY2(QRectF(0, 0, 12, 12).contains(bounds) && bounds.width() > 6 && bounds.height() > 6, name);
        QVERIFY2(std::abs(bounds.center().x() - 6) < 1 && std::abs(bounds.center().y() - 6) < 0.5, name);
    }
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
    for (int step = 20; step <= 60; ++step) {
        const double scale = step / 20.0;
        // Where the item lies decides whether its edges are rounded up or down.
        for (const double pixels : {std::floor(14 * scale), std::ceil(14 * scale)}) {
            const QSizeF size(pixels, qRound(11 * scale));
            const auto bars = VisualizerView::barRects({2, 11, 5.3, 20.0 / 3}, size.toSize(), scale);
            for (std::size_t i = 0; i < bars.size(); ++i) {
                QVERIFY(bars[i].left() == std::floor(bars[i].left()) && bars[i].width() >= 2 &&
                        bars[i].width() == std::floor(bars[i].width()));
                QCOMPARE(bars[i].bottom(), size.height());
                QVERIFY2(QRectF(QPointF(), size).adjusted(0, -0.5, 0, 0).contains(bars[i]),
                         qPrintable(QString::number(scale)));
                QVERIFY(i == 0 || bars[i].left() - bars[i - 1].right() == bars[1].left() - bars[0].right());
            }
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
