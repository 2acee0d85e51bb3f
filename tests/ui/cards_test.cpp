#include "engine/EngineFixture.h"
#include "lyrics/LyricsService.h"
#include "support/FakeAppearance.h"
#include "ui/controls/Contrast.h"
#include "ui/preview/LyricsCanvas.h"
#include "ui/preview/PreviewPlacement.h"
#include "ui/track/CardLook.h"
#include "ui/track/TrackModel.h"
#include "ui/widget/WidgetLayout.h"
#include "ui/widget/WidgetPlacement.h"

#include <QTest>

/// What the preview and the widget are made of.
class CardsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void previewIsPlaced()
    {
        const QRectF screen(0, 0, 1280, 800);
        const auto left = [](double pill, const QRectF& on) {
            const QRectF card = previewPlacement({pill, 0, 185, 28}, {380, 630}, on);
            return card.size() == QSizeF(380, 630) && card.top() == 34 ? card.left() : -1;
        };
        QCOMPARE(left(500, screen), 402.5);
        QCOMPARE(left(1095, screen), 892.0);            // near the right edge
        QCOMPARE(left(0, screen), 8.0);                 // near the left one
        QCOMPARE(left(120, {100, 0, 300, 800}), 108.0); // narrower than the card
    }

    void widgetIsPlaced()
    {
        using namespace WidgetPlacement;
        const QRectF screen(0, 30, 1280, 770);
        QCOMPARE(first(screen), QRectF(960, 70, 300, 140));
        QCOMPARE(first(std::nullopt), QRectF(100, 100, 300, 140));
        const QRectF right(1280, 0, 1000, 700);
        using Case = std::tuple<QRectF, QList<QRectF>, QRectF>;
        for (const auto& [saved, screens, shown] :
             {Case{{1500, 80, 300, 140}, {screen, right}, {1500, 80, 300, 140}},
              {{1500, 80, 300, 140}, {screen}, {980, 80, 300, 140}},    // its screen has gone
              {{-240, 700, 300, 140}, {screen}, {-240, 700, 300, 140}}, // a hand's breadth is enough
              {{-290, 900, 300, 140}, {screen}, {0, 660, 300, 140}},
              {{10.4, 50.8, 20, 900}, {screen}, {10.4, 50.8, 240, 320}}, // of another make
              {{9e9, 9e9, 300, 140}, {}, {9e9, 9e9, 300, 140}}}) {
            QCOMPARE(reachable(saved, screens), shown);
        }
        QCOMPARE(ofHeight({10, 600, 300, 140}, 182, screen), QRectF(10, 600, 300, 182));
        QCOMPARE(ofHeight({10, 650, 300, 140}, 182, screen), QRectF(10, 618, 300, 182));
        QCOMPARE(ofHeight({10, 700, 300, 140}, 182, screen), QRectF(10, 700, 300, 182)); // as it was put
        QCOMPARE(edgesAt({150, 70}, {300, 140}), Qt::Edges());
        QCOMPARE(edgesAt({2, 70}, {300, 140}), Qt::Edges(Qt::LeftEdge));
        QCOMPARE(edgesAt({290, 138}, {300, 140}), Qt::RightEdge | Qt::BottomEdge);
    }

    void widgetFits()
    {
        const auto of = [](int bits) {
            return WidgetElements{.artwork = (bits & 1) != 0,
                                  .title = (bits & 2) != 0,
                                  .artist = (bits & 4) != 0,
                                  .progress = (bits & 8) != 0,
                                  .transport = (bits & 16) != 0,
                                  .lyric = (bits & 32) != 0};
        };
        QCOMPARE(WidgetLayout::fittingHeight({}), 140.0);
        QCOMPARE(WidgetLayout::fittingHeight(of(0)), 60.0);
        for (int bits = 0; bits < 64; ++bits) {
            for (const QSizeF size :
                 {QSizeF(300, WidgetLayout::fittingHeight(of(bits))), QSizeF(240, 60), QSizeF(520, 320)}) {
                const WidgetLayout layout = WidgetLayout::make(size, of(bits));
                const QRectF card = QRectF(QPointF(), size).adjusted(8, 8, -8, -8);
                const QRectF closeButton(size.width() - 25, 5, 20, 20);
                QVERIFY(!closeButton.intersects(layout.title) && !closeButton.intersects(layout.artist));
                double bottom = 0;
                for (const QRectF& row : {layout.artwork | layout.title | layout.artist, layout.progress,
                                          layout.transport, layout.lyric}) {
                    QVERIFY2(row.isEmpty() || (card.contains(row) && row.top() >= bottom),
                             qPrintable(u"%1 %2"_s.arg(bits).arg(size.height())));
                    bottom = std::max(bottom, row.bottom());
                }
            }
            const WidgetLayout fit =
                WidgetLayout::make({300, WidgetLayout::fittingHeight(of(bits))}, of(bits));
            QCOMPARE(!fit.lyric.isEmpty() && !fit.progress.isEmpty(),
                     (bits & 40) == 40); // nothing is left out
        }
    }

    /// On covers of every lightness, light and dark, under every tint.
    void textCanBeRead()
    {
        const std::optional<QColor> tints[] = {std::nullopt, QColor(Qt::black), QColor(217, 122, 77),
                                               QColor(77, 158, 217), QColor(158, 107, 217)};
        for (const QColor& color : {QColor(Qt::black), QColor(Qt::white), QColor(128, 128, 128),
                                    QColor(Qt::yellow), QColor(Qt::blue), QColor()}) {
            QImage cover;
            if (color.isValid()) {
                cover = QImage(60, 60, QImage::Format_RGB32);
                cover.fill(color);
            }
            for (const auto& tint : tints) {
                for (const bool isDark : {false, true}) {
                    const CardLook look = CardLook::make(cover, isDark, tint);
                    for (int y = 0; y < look.backdrop.height(); y += 19) {
                        const QColor ground = look.backdrop.pixelColor(y, y);
                        for (const QColor& text :
                             {look.colors.text, look.colors.dimmedText, look.colors.quietText}) {
                            const QColor seen = Contrast::mixed(ground, QColor(text.rgb()), text.alphaF());
                            QVERIFY2(Contrast::between(seen, ground) >= 4.5, qPrintable(color.name()));
                        }
                    }
                }
            }
        }
    }

    void timesMakeUpTheLength()
    {
        for (const auto& [length, remaining] : {std::pair(u"200"_s, u"-3:07"_s), {u"200.5"_s, u"-3:07"_s}}) {
            EngineFixture engine;
            engine.reply(Player::appleMusic, u"Song|||Band|||Album|||%1|||12.0|||true|||77"_s.arg(length));
            engine.start();
            FakeAppearance appearance;
            FrameClock clock(engine.desktop.runLoop);
            TrackModel track({.service = *engine.service,
                              .theme = *engine.theme,
                              .power = *engine.power,
                              .appearance = appearance,
                              .runLoop = engine.desktop.runLoop,
                              .clock = clock});
            engine.desktop.runLoop.advance(1.1);
            QCOMPARE(track.elapsedText(), u"0:13"_s);
            QCOMPARE(track.remainingText(), remaining);
            track.scrub(0.5);
            QCOMPARE(track.elapsedText() + track.remainingText(), u"1:40-1:40"_s);
        }
    }

    void wordsAreFound()
    {
        const QStringList words{u"la"_s, u"la"_s, u"gone"_s, u"end"_s};
        QCOMPARE(LyricsLayout::wordStarts(u"la la, end"_s, words), (QList<int>{0, 3, 5, 7, 10}));
    }

    /// Which line is seen where is asked by pointing at it. A line takes some thirty points.
    void linesFollowTheSong()
    {
        EngineFixture engine(7, u"playing"_s); // from 12 s on
        ManualRunLoop& loop = engine.desktop.runLoop;
        QList<SyncedLyric> lines;
        for (int i = 0; i < 60; ++i) {
            lines.append({.time = i * 2.0, .text = u"Line %1"_s.arg(i)});
        }
        LyricsService lyrics(loop, engine.desktop.notifications, engine.defaults, engine.desktop.workspace,
                             [&](const LyricsRequest&, QObject* context, auto completion) {
                                 loop.after(0.1, context, [=] { completion(lines); });
                             });
        LyricsModel model({.service = *engine.service, .lyrics = lyrics, .runLoop = loop});
        FrameClock clock(loop);
        LyricsCanvas canvas;
        canvas.setSize({300, 170});
        canvas.setModel(&model);
        canvas.setClock(&clock);
        model.setShown(&canvas, true);
        const auto seenAt = [&canvas](double height) {
            canvas.point(height);
            const int row = canvas.pointedRow();
            canvas.leave();
            return row;
        };
        const double songLine = 170 * 0.42;
        loop.advance(0.2);
        QCOMPARE(seenAt(songLine), 6);
        canvas.point(songLine);
        loop.advance(3); // 15.2, and the line has come to a pointer that rests
        QCOMPARE(canvas.pointedRow(), 7);
        canvas.leave();
        canvas.turn(400);
        loop.advance(1);
        QVERIFY(seenAt(songLine) > 15);
        canvas.turn(-100);
        loop.advance(4.9); // 21.1, and the lines have not moved though the song has
        QVERIFY(seenAt(songLine) > 12);
        loop.advance(0.8);
        QCOMPARE(seenAt(songLine), 10);
        canvas.step(2);
        loop.advance(0.5);
        QCOMPARE(canvas.pointedRow(), 12);
        canvas.choose();
        QVERIFY(engine.desktop.scripts.sources.last().contains(u"player position to 24.0"_s));
    }
};

QTEST_MAIN(CardsTest)
#include "cards_test.moc"
