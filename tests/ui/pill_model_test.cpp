#include "PillFixture.h"

#include <QTest>

class PillModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void obeysTheLeftButton()
    {
        const QString play = PlayerScripts::playPause(Player::appleMusic);
        const QString next = PlayerScripts::nextTrack(Player::appleMusic);
        const QString previous = PlayerScripts::previousTrack(Player::appleMusic);
        const QString preview = u"preview"_s;
        const auto cover = &PillLayout::albumArt;
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
              {"previous", previousButton, previousButton, previous},
              {"next", nextButton, nextButton, next},
              {"cover", cover, cover, u"music://"_s},
              {"title", title, title, {}},
              {"slid from one to another", previousButton, playButton, {}},
              {"slid off", playButton, title, {}},
              {"slid on", title, playButton, {}},
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
                done +=
                    f.engine.desktop.scripts.take() + std::exchange(f.engine.desktop.workspace.opened, {});
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
        f.pill->hover(f.pill->layout().albumArt.topLeft() - QPointF(3.9, 3));
        QCOMPARE(f.pill->hoveredZone(), u"art"_s);
        f.pill->hover(f.pill->layout().progress.center());
        QVERIFY(f.pill->hoveringBar() && f.pill->hoveredZone().isEmpty());
        f.pill->press(f.pill->layout().playButton.center());
        QCOMPARE(f.pill->pressedZone(), u"play"_s);
        f.pill->hover(f.pill->layout().nextButton.center());
        QCOMPARE(f.pill->hoveredZone(), u"next"_s);
        QCOMPARE(f.pill->pressedZone(), QString());
        f.pill->leave();
        QVERIFY(f.pill->hoveredZone().isEmpty() && !f.pill->isHovering());
    }

    void titleIsOneLine()
    {
        const PillFixture f(u"Song\r\n of\u2028lines|||Band|||Album|||200.5|||12.0|||true|||77"_s);
        QCOMPARE(f.pill->title(), u"Song of lines"_s);
    }
};

QTEST_GUILESS_MAIN(PillModelTest)
#include "pill_model_test.moc"
