#include "PillFixture.h"
#include "prefs/PellarTheme.h"
#include "prefs/PillVisibilityManager.h"
#include "support/MemoryDefaults.h"
#include "ui/pill/PillColors.h"
#include "ui/pill/PillLayout.h"

#include <QPainter>
#include <QtTest>

class PillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// The row fills the width that the settings say: the line ends where what is seen does, as far from both
    /// ends.
    void laysOutEveryCombination()
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
            const PillLayout layout =
                PillLayout::make(pill.size(), {shown.showAlbumArt, shown.showVisualizer, shown.showPrevButton,
                                               shown.showNextButton, shown.showTitle});
            const std::pair<QRectF, bool> parts[] = {
                {layout.albumArt, shown.showAlbumArt},         {layout.visualizer, shown.showVisualizer},
                {layout.previousButton, shown.showPrevButton}, {layout.playButton, true},
                {layout.nextButton, shown.showNextButton},     {layout.title, shown.showTitle}};
            std::optional<double> edge;
            const QByteArray name = QByteArray::number(flags, 2);
            const QRectF line = layout.progress;
            for (const auto& [frame, isShown] : parts) {
                QVERIFY2(frame.isEmpty() != isShown, name);
                if (isShown) {
                    const double gap = edge ? frame.left() - *edge : 3;
                    QVERIFY2(gap >= 3 && gap <= 10 && pill.contains(frame) && !frame.intersects(line), name);
                    edge = frame.right();
                }
            }
            QVERIFY2(pill.contains(line) && line.height() == 3, name);
            QVERIFY2(line.center().x() == pill.center().x(), name);
            QVERIFY2(!shown.showTitle || layout.title.right() == line.right(), name);
            QVERIFY2(!shown.showTitle || layout.title.width() >= 50, name);
            QVERIFY2(!shown.showAlbumArt || std::abs(layout.albumArt.left() - line.left()) <= 0.5, name);
            const double end = layout.nextButton.right() - 2;
            QVERIFY2(!shown.showNextButton || shown.showTitle || std::abs(end - line.right()) <= 0.5, name);
        }
        // Narrower than its contents: nothing turns inside out.
        const PillLayout tiny = PillLayout::make({10, 10}, {});
        QVERIFY(tiny.title.width() >= 0 && tiny.progress.width() <= 10 && tiny.cornerRadius <= 5);
    }

    /// Contrast of 4.5 : 1 for text and 3 : 1 for the progress, as WCAG 2 asks for.
    void canBeRead()
    {
        const auto over = [](const QColor& ink, const QColor& ground) {
            QImage mixed(1, 1, QImage::Format_RGB32);
            mixed.fill(ground);
            QPainter(&mixed).fillRect(0, 0, 1, 1, ink);
            return mixed.pixelColor(0, 0);
        };
        const auto luminance = [](const QColor& colour) {
            const auto linear = [](double c) {
                return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
                   0.0722 * linear(colour.blueF());
        };
        const auto contrast = [&](const QColor& a, const QColor& b) {
            const auto [darker, brighter] = std::minmax({luminance(a), luminance(b)});
            return (brighter + 0.05) / (darker + 0.05);
        };
        // Of the themes, and of a black, a yellow and a blue cover.
        using Theme = PellarTheme;
        QList<std::optional<QColor>> tints = {
            {}, QColor(140, 77, 77), QColor(199, 198, 0), QColor(0, 0, 140)};
        for (const Theme theme : {Theme::midnight, Theme::warmth, Theme::tide, Theme::dusk}) {
            tints << staticTint(theme);
        }
        for (qsizetype i = 0; i < 2 * tints.size(); ++i) {
            const PillColors colors = PillColors::forDesktop(i % 2 == 0, tints[i / 2]);
            const QColor& ground = colors.background;
            const QByteArray name = "tint " + QByteArray::number(i / 2.0);
            QVERIFY2(contrast(over(colors.text, ground), ground) > 7, name);
            QVERIFY2(contrast(over(colors.dimmedText, ground), ground) > 4.5, name);
            QVERIFY2(contrast(over(colors.bars, ground), ground) > 3, name);
            QVERIFY2(contrast(over(colors.fill, ground), over(colors.track, ground)) >= 2.99, name);
            for (const QColor& lit : {over(colors.highlight, ground), over(colors.pressed, ground)}) {
                QVERIFY2(contrast(over(colors.text, lit), lit) > 4.5 && contrast(lit, ground) > 1.15, name);
            }
            QVERIFY2(colors.highlight != colors.pressed, name);
        }
    }

    void obeysTheLeftButton()
    {
        const QString play = PlayerScripts::playPause(Player::appleMusic);
        const QString next = PlayerScripts::nextTrack(Player::appleMusic);
        const QString preview = u"preview"_s;
        const auto title = &PillLayout::title;
        const auto playButton = &PillLayout::playButton;
        const auto previousButton = &PillLayout::previousButton;
        const auto nextButton = &PillLayout::nextButton;
        using Part = QRectF PillLayout::*;
        struct Press {
            const char* name;
            Part down;
            Part up;
            QString outcome;
            double held = 0.1;    ///< seconds
            QPointF movedBy = {}; ///< at once
        };
        for (const auto& [name, down, up, outcome, held, movedBy] :
             {Press{"play", playButton, playButton, play},
              {"next", nextButton, nextButton, next},
              {"cover", &PillLayout::albumArt, &PillLayout::albumArt, u"music://"_s},
              {"title", title, title, {}},
              {"slid from one to another", previousButton, playButton, {}},
              {"slid off", playButton, title, {}},
              {"held on play", playButton, playButton, play, 2},
              {"held on the title", title, title, preview, 0.41},
              {"held, then slid onto play", title, playButton, preview, 0.41},
              {"not held long enough", title, title, {}, 0.39},
              {"held, trembling", title, title, preview, 0.5, {6, 8}},
              {"dragged", title, title, {}, 0.5, {10, 2}}}) {
            PillFixture f;
            const QPointF from = (f.pill->layout().*down).center();
            const QPointF to = (f.pill->layout().*up).center();
            QStringList done;
            f.engine.desktop.notifications.observe(u"com.orvalen.pellar.togglePreview"_s, this,
                                                   [&](const QVariantMap&) { done << preview; });
            for (int times = 0; times < 2; ++times) { // nothing is left over from the first
                f.pill->hover(from);
                f.pill->press(from);
                f.pill->hover(from + movedBy);
                f.engine.desktop.scripts.take();
                f.runLoop.advance(held);
                QVERIFY2(!f.engine.desktop.scripts.take().contains(play), name);
                f.pill->hover(to);
                f.pill->release(to);
                done += f.engine.desktop.scripts.take();
                done += std::exchange(f.engine.desktop.workspace.opened, {});
                QVERIFY2(std::exchange(done, {}).join(u'+') == outcome, name);
            }
            QCOMPARE(f.engine.desktop.haptics.performed, outcome == preview ? 2 : 0);
        }
    }

    void seeks()
    {
        PillFixture f;
        const QRectF line = f.pill->layout().progress;
        const QPointF quarter(line.left() + line.width() / 4, line.center().y());
        f.pill->press(quarter);
        QCOMPARE(f.pill->progress(), 0.25);
        f.pill->hover(line.center() - QPointF(0, 300)); // up and away: the drag goes on
        QVERIFY(f.pill->isSeeking() && !f.pill->isHovering());
        f.runLoop.advance(1.5);
        QCOMPARE(f.pill->progress(), 0.5); // the track's own time does not show
        f.engine.desktop.scripts.take();
        f.pill->release(quarter + line.bottomRight()); // beyond the end
        QCOMPARE(f.engine.desktop.scripts.take(), {PlayerScripts::seek(Player::appleMusic, 200.5)});
        QVERIFY(!f.pill->isSeeking() && f.pill->progress() == 1);
    }

    /// A drag that comes to nothing: the line has no length, or the place was one in another track.
    void doesNotSeek()
    {
        const QString song = u"Song|||Band|||Album|||200.5|||12.0|||true|||77"_s;
        for (const auto& [playing, next] :
             {std::pair(u"Radio|||||||||0|||12.0|||true|||77"_s, u"Radio|||||||||0|||13.0|||true|||77"_s),
              {song, u"Other|||Band|||Album|||100|||0.0|||true|||77"_s},
              {song, u"Song|||Orchestra|||Album|||200.5|||0.0|||true|||77"_s}}) {
            PillFixture f(playing);
            const QPointF middle = f.pill->layout().progress.center();
            f.pill->press(middle);
            f.pill->hover(middle + QPointF(20, 0));
            f.engine.reply(Player::appleMusic, next);
            f.engine.service->refresh();
            QVERIFY(!f.pill->isSeeking());
            f.engine.desktop.scripts.take();
            f.pill->hover(middle + QPointF(30, 0));
            QVERIFY(f.pill->progress() < 0.1);
            f.pill->release(middle + QPointF(30, 0));
            QCOMPARE(f.engine.desktop.scripts.take(), QStringList());
        }
    }

    void lightsUpWhatIsUnderThePointer()
    {
        PillFixture f;
        f.pill->hover(f.pill->layout().progress.center());
        QVERIFY(f.pill->hoveringBar() && f.pill->hoveredZone().isEmpty());
        f.pill->press(f.pill->layout().playButton.center());
        QCOMPARE(f.pill->pressedZone(), u"play"_s);
        f.pill->hover(f.pill->layout().nextButton.center());
        QVERIFY(f.pill->hoveredZone() == u"next" && f.pill->pressedZone().isEmpty());
        f.pill->leave();
        QVERIFY(f.pill->hoveredZone().isEmpty() && !f.pill->isHovering());
    }

    void titleIsOneLine()
    {
        const PillFixture f(u"Song\r\n of\u2028lines|||Band|||Album|||200.5|||12.0|||true|||77"_s);
        QCOMPARE(f.pill->title(), u"Song of lines"_s);
    }
};

QTEST_GUILESS_MAIN(PillTest)
#include "pill_test.moc"
