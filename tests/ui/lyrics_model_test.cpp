#include "engine/EngineFixture.h"
#include "lyrics/LyricsService.h"
#include "ui/lyrics/LyricsModel.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QString none = u"-1 0"_s;

} // namespace

/// The track plays from 12 s on, on a clock moved by hand. Its lines begin at 10, 13, 14.5 and 300 s; the one
/// at 13 s has two words, from 13 and 13.75 s on.
class LyricsModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _model.reset();
        _lyrics.reset();
        _engine = std::make_unique<EngineFixture>(7, u"playing"_s);
        _asked.clear();
        _lines = {{.time = 10, .text = u"one"_s},
                  {.time = 13, .text = u"two"_s, .words = {{{13, 13.5, u"t"_s}, {13.75, 14, u"wo"_s}}}},
                  {.time = 14.5, .text = QString()},
                  {.time = 300, .text = u"never"_s}};
        _lyrics = std::make_unique<LyricsService>(
            loop(), _engine->desktop.notifications, _engine->defaults, _engine->desktop.workspace,
            [this](const LyricsRequest& request, QObject* context, auto completion) {
                _asked << request.title;
                loop().after(0.1, context, [this, completion] { completion(_lines); });
            });
        _model = std::make_unique<LyricsModel>(
            LyricsModel::Dependencies{.service = *_engine->service, .lyrics = *_lyrics, .runLoop = loop()});
    }

    void followsTheTrack()
    {
        const QSignalSpy layouts(_model.get(), &LyricsModel::lyricsChanged);
        show();
        QCOMPARE(_model->placeholder(), u"Loading lyrics…"_s);
        QCOMPARE(sung(0.1), u"0 0"_s); // 12.1
        QVERIFY(_model->placeholder().isEmpty());
        QCOMPARE(layouts.size(), 1); // not again as the lookup ends
        QCOMPARE(sung(0.89), u"0 0"_s);
        QCOMPARE(sung(0.02), u"1 1"_s); // 13.01
        QCOMPARE(_engine->desktop.workspace.positionChecks, 1);
        QCOMPARE(sung(0.73), u"1 1"_s);
        QCOMPARE(sung(0.02), u"1 2"_s); // 13.76
        QCOMPARE(_model->data(_model->index(1), LyricsModel::WordsRole).toStringList(),
                 (QStringList{u"t"_s, u"wo"_s}));
        QCOMPARE(sung(0.75), u"2 0"_s); // 14.51, and no line is to come before the end
        QCOMPARE(_model->activeText(), u"♪"_s);
        QCOMPARE(timers(), 0);

        _model->seekToLine(1);
        _model->seekToLine(9);
        QCOMPARE(_engine->desktop.scripts.sources.last(),
                 u"tell application \"Music\" to set player position to 13.0"_s);
        QCOMPARE(sung(0), u"1 1"_s);
        notify(u"Paused"_s);
        QCOMPARE(timers(), 0);
        _engine->reply(Player::appleMusic, u"Song|||Band|||Album|||200.5|||13.8|||false|||77"_s);
        QCOMPARE(sung(0.29), u"1 1"_s);
        QCOMPARE(sung(0.02), u"1 2"_s); // the look at what came of the seek
        move({.seconds = 9, .rate = 2});
        QCOMPARE(sung(0.49), none);
        QCOMPARE(sung(0.02), u"0 0"_s);
        move({.seconds = 13.2, .rate = 0});
        QCOMPARE(sung(0), u"1 1"_s);
        _lines = {{.time = 0, .text = u"at once"_s}};
        notify(u"Playing"_s, u"Next"_s);
        move({.seconds = -0.5, .rate = 1}); // announced before it begins
        QCOMPARE(sung(0.49), none);
        QCOMPARE(sung(0.02), u"0 0"_s);
    }

    void cutsWhatNoSongHas()
    {
        const QString longLine(1000, u'a');
        _lines.fill({.time = 1, .text = longLine}, 5000);
        show();
        loop().advance(0.2);
        QCOMPARE(_model->rowCount(), 2000);
        QCOMPARE(_model->index(0).data().toString().size(), 301);
        const QString text = longLine + u'\n';
        _engine->desktop.workspace.tracks[BundleId::music] = {
            .title = u"Next"_s, .artist = u"Band"_s, .album = u"Album"_s, .lyrics = text.repeated(900)};
        notify(u"Playing"_s, u"Next"_s);
        loop().settle();
        QVERIFY(_model->isPlain());
        QCOMPARE(_model->plainLines().size(), 900);
        QCOMPARE(_model->plainLines().last().size(), 301);
    }

    void asksWhileItIsShown()
    {
        loop().advance(1);
        QVERIFY(_asked.isEmpty() && _model->activeIndex() == -1);
        QObject widget;
        show();
        _model->setShown(&widget, true); // the second asks no more
        loop().settle();
        show(false);
        show();
        loop().settle();
        QCOMPARE(_asked, QStringList{u"Song"_s});
        loop().advance(0.2);
        QCOMPARE(timers(), 0); // the widget still shows them
        _model->setShown(&widget, false);
        _model->setShown(&widget, false);
        show();
        QCOMPARE(timers(), 1);
        QCOMPARE(sung(0), u"1 1"_s); // 13.2
        QCOMPARE(_asked.size(), 1);
        notify(u"Playing"_s, u"Next"_s);
        QVERIFY(!_model->isSynced());
        loop().advance(0.1);
        QVERIFY(_model->isSynced());
        QCOMPARE(_asked.takeLast(), u"Next"_s);
        _engine->quit(Player::appleMusic);
        _engine->followedAfter(0);
        QCOMPARE(_model->placeholder(), u"No lyrics available"_s);
        _engine->hear(0.5F);
        QCOMPARE(_engine->followedAfter(2), Player::systemAudio);
        {
            QObject view;
            show(false);
            _model->setShown(&view, true);
        }
        notify(u"Playing"_s, u"Unseen"_s);
        QCOMPARE(_asked, QStringList{u"Song"_s});
    }

private:
    ManualRunLoop& loop() { return _engine->desktop.runLoop; }
    void show(bool isShown = true) { _model->setShown(this, isShown); }
    void notify(const QString& state, const QString& title = u"Song"_s)
    {
        _engine->notify(Player::appleMusic, {{u"Player State"_s, state},
                                             {u"Name"_s, title},
                                             {u"Artist"_s, u"Band"_s},
                                             {u"Album"_s, u"Album"_s}});
    }
    void move(const PlaybackPosition& position)
    {
        _engine->desktop.workspace.positions[BundleId::music] = position;
        Q_EMIT _engine->desktop.workspace.playerMoved(BundleId::music);
        loop().settle();
        _engine->desktop.workspace.positions.clear();
    }

    /// The active line and its words so far, some seconds from now.
    QString sung(double seconds)
    {
        loop().advance(seconds);
        return u"%1 %2"_s.arg(_model->activeIndex()).arg(_model->activeWord());
    }
    /// How many timers there are because this view shows the lines.
    int timers()
    {
        const int shown = loop().pending();
        show(false);
        const int hidden = loop().pending();
        show();
        return shown - hidden;
    }
    std::unique_ptr<EngineFixture> _engine;
    QStringList _asked;
    QList<SyncedLyric> _lines;
    std::unique_ptr<LyricsService> _lyrics;
    std::unique_ptr<LyricsModel> _model;
};

QTEST_GUILESS_MAIN(LyricsModelTest)
#include "lyrics_model_test.moc"
