#include "PillFixture.h"

#include <QTest>

class PillModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void obeysTheLeftButton_data();
    void obeysTheLeftButton();
    void seeks_data();
    void seeks();
    void doesNotSeek_data();
    void doesNotSeek();
    void lightsUpWhatIsUnderThePointer();
    void scrollsTitle();
};

void PillModelTest::obeysTheLeftButton_data()
{
    QTest::addColumn<QString>("down");
    QTest::addColumn<QPointF>("movedBy"); ///< at once
    QTest::addColumn<double>("held");     ///< seconds
    QTest::addColumn<QString>("up");
    QTest::addColumn<QString>("outcome");

    const QString play = PlayerScripts::playPause(Player::appleMusic);
    const auto row = [](const char* name, const char* down, const char* up, const QString& outcome,
                        double held = 0.1, QPointF movedBy = {}) {
        QTest::newRow(name) << QString::fromLatin1(down) << movedBy << held << QString::fromLatin1(up)
                            << outcome;
    };
    const QString preview = QStringLiteral("preview");
    row("play", "play", "play", play);
    row("previous", "prev", "prev", PlayerScripts::previousTrack(Player::appleMusic));
    row("next", "next", "next", PlayerScripts::nextTrack(Player::appleMusic));
    row("cover", "art", "art", QStringLiteral("music://"));
    row("title", "title", "title", {});
    row("slid from one to another", "prev", "play", {});
    row("slid off", "play", "title", {});
    row("slid on", "title", "play", {});
    row("held on play", "play", "play", play, 2);
    row("held on the title", "title", "title", preview, 0.41);
    row("held, then slid onto play", "title", "play", preview, 0.41);
    row("not held long enough", "title", "title", {}, 0.39);
    row("held, trembling", "title", "title", preview, 0.5, {6, 8});
    row("dragged", "title", "title", {}, 0.5, {10, 2});
}

void PillModelTest::obeysTheLeftButton()
{
    QFETCH(QString, down);
    QFETCH(QPointF, movedBy);
    QFETCH(double, held);
    QFETCH(QString, up);
    PillFixture f;
    const auto& layout = f.pill->layout();
    const QMap<QString, QRectF> frames = {{QStringLiteral("art"), layout.albumArt},
                                          {QStringLiteral("prev"), layout.previousButton},
                                          {QStringLiteral("play"), layout.playButton},
                                          {QStringLiteral("next"), layout.nextButton},
                                          {QStringLiteral("title"), layout.title}};
    QStringList done;
    f.engine.desktop.notifications.observe(QStringLiteral("com.orvalen.pellar.togglePreview"), this,
                                           [&](const QVariantMap&) { done << QStringLiteral("preview"); });
    const auto pressed = [&] {
        f.pill->hover(frames[down].center());
        f.pill->press(frames[down].center());
        f.pill->hover(frames[down].center() + movedBy);
        f.engine.desktop.scripts.take();
        f.runLoop.advance(held);
        const QStringList early = f.engine.desktop.scripts.take();
        QVERIFY(!early.contains(PlayerScripts::playPause(Player::appleMusic)));
        f.pill->hover(frames[up].center());
        f.pill->release(frames[up].center());
        done += f.engine.desktop.scripts.take() + std::exchange(f.engine.desktop.workspace.opened, {});
    };
    pressed();
    QTEST(done.join(u'+'), "outcome");
    QCOMPARE(f.engine.desktop.haptics.performed, done.count(QStringLiteral("preview")));
    done.clear();
    pressed(); // nothing is left over from the first
    QTEST(done.join(u'+'), "outcome");
}

void PillModelTest::seeks_data()
{
    QTest::addColumn<double>("from"); // of the line's width
    QTest::addColumn<double>("to");
    QTest::addColumn<double>("seconds");
    QTest::newRow("click") << 0.25 << 0.25 << 50.125;
    QTest::newRow("drag") << 0.1 << 0.5 << 100.25;
    QTest::newRow("beyond the end") << 0.5 << 3.0 << 200.5;
    QTest::newRow("before the start") << 0.5 << -2.0 << 0.0;
}

void PillModelTest::seeks()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(double, seconds);
    PillFixture f;
    const QRectF line = f.pill->layout().progress;
    const auto at = [&](double part) {
        return QPointF(line.left() + part * line.width(), line.center().y());
    };
    QVERIFY(std::abs(f.pill->progress() - 12 / 200.5) < 1e-9);
    f.pill->press(at(from));
    QCOMPARE(f.pill->progress(), from);
    f.pill->hover(at(to) - QPointF(0, 300)); // up and away: the drag goes on
    QVERIFY(f.pill->isSeeking() && !f.pill->isHovering());
    f.runLoop.advance(1.5);
    QCOMPARE(f.pill->progress(), std::clamp(to, 0.0, 1.0)); // the track's own time does not show
    f.engine.desktop.scripts.take();
    f.pill->release(at(to));
    QCOMPARE(f.engine.desktop.scripts.take(), {PlayerScripts::seek(Player::appleMusic, seconds)});
    QVERIFY(!f.pill->isSeeking());
    QVERIFY(std::abs(f.pill->progress() - seconds / 200.5) < 1e-9);
}

/// A drag that comes to nothing: the line has no length, a menu opens, or the place was one in another track.
void PillModelTest::doesNotSeek_data()
{
    QTest::addColumn<QString>("playing");
    QTest::addColumn<QString>("next"); // what plays before the button is released; nothing when a menu opens
    const auto row = [](const char* name, const char* playing, const char* next) {
        QTest::newRow(name) << QString::fromLatin1(playing) << QString::fromLatin1(next);
    };
    const char* const song = "Song|||Band|||Album|||200.5|||12.0|||true|||77";
    row("radio", "Radio|||||||||0|||12.0|||true|||77", "Radio|||||||||0|||13.0|||true|||77");
    row("menu", song, "");
    row("next track", song, "Other|||Band|||Album|||100|||0.0|||true|||77");
    row("another of that name", song, "Song|||Orchestra|||Album|||200.5|||0.0|||true|||77");
}

void PillModelTest::doesNotSeek()
{
    QFETCH(QString, playing);
    QFETCH(QString, next);
    PillFixture f(playing);
    const QRectF line = f.pill->layout().progress;
    f.pill->press(line.center());
    f.pill->hover(line.center() + QPointF(20, 0));
    if (next.isEmpty()) {
        f.pill->cancelPress();
    } else {
        f.engine.reply(Player::appleMusic, next);
        f.engine.service->refresh();
    }
    QVERIFY(!f.pill->isSeeking());
    f.engine.desktop.scripts.take();
    f.pill->hover(line.center() + QPointF(30, 0));
    QVERIFY(f.pill->progress() < 0.1);
    f.pill->release(line.center() + QPointF(30, 0));
    QCOMPARE(f.engine.desktop.scripts.take(), QStringList());
}

void PillModelTest::lightsUpWhatIsUnderThePointer()
{
    PillFixture f;
    f.pill->hover(f.pill->layout().albumArt.topLeft() - QPointF(3.9, 3));
    QCOMPARE(f.pill->hoveredZone(), QStringLiteral("art"));
    f.pill->hover(f.pill->layout().progress.center());
    QVERIFY(f.pill->hoveringBar() && f.pill->hoveredZone().isEmpty());
    f.pill->press(f.pill->layout().playButton.center());
    QCOMPARE(f.pill->pressedZone(), QStringLiteral("play"));
    f.pill->hover(f.pill->layout().nextButton.center());
    QCOMPARE(f.pill->hoveredZone(), QStringLiteral("next"));
    QCOMPARE(f.pill->pressedZone(), QString());
    f.pill->leave();
    QVERIFY(f.pill->hoveredZone().isEmpty() && !f.pill->isHovering());
}

void PillModelTest::scrollsTitle()
{
    PillFixture f(QStringLiteral("Song\r\n of\u2028lines|||Band|||Album|||200.5|||12.0|||true|||77"));
    QCOMPARE(f.pill->title(), QStringLiteral("Song of lines"));
    QVERIFY(f.pill->isTitleActive());
    f.engine.power->manualMode = PowerMode::lowPower;
    QVERIFY(!f.pill->isTitleActive());
    f.pill->hover({1, 1});
    QVERIFY(f.pill->isTitleActive());
    f.pill->leave();
    f.engine.power->manualMode = PowerMode::normal;
    f.engine.setState(Player::appleMusic, QStringLiteral("paused"));
    f.engine.service->refresh();
    QVERIFY(!f.pill->isTitleActive());
}

QTEST_GUILESS_MAIN(PillModelTest)
#include "pill_model_test.moc"
