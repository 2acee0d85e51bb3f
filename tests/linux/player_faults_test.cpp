#include "Mirror.h"

#include "platform/BundleId.h"
#include "support/EngineParts.h"
#include "support/FakeCapture.h"
#include "support/LogFile.h"
#include "support/Picture.h"

#include <QtTest>

namespace {

const QString status = u"PlaybackStatus"_s;
const QString metadata = u"Metadata"_s;
const QString one = u"One"_s;
const QString two = u"Two"_s;
const QString everything = u"*"_s;
const QString noObject = u"org.freedesktop.DBus.Error.UnknownObject"_s;
const QString accessDenied = u"org.freedesktop.DBus.Error.AccessDenied"_s;
constexpr int moment = 800 / HastyLoop::haste; // milliseconds of a test

QVariantMap at(double seconds)
{
    return {{u"Position"_s, static_cast<qlonglong>(seconds * 1e6)}};
}

/// A song whose cover, if it has one, is all of this colour.
QVariantMap song(const QString& title, const QColor& cover = {}, const QString& album = u"Album"_s)
{
    const QString id = u"/t/%1"_s.arg(qHash(title + album));
    QVariantMap song = MprisStandIn::metadata(id, title, u"Band"_s, album, 200);
    if (cover.isValid()) {
        song[u"mpris:artUrl"_s] = addressOf(pictureFile(cover));
    }
    return song;
}

/// A player, and the engine as it sees it over a real bus. It plays "One", with a red cover, from 30 s on.
struct Stage {
    Stage()
    {
        mirror.defaults.setObject(u"pellar.audio.sources"_s, qlonglong(7));
        player.set(MprisStandIn::playing(song(one, Qt::red)));
        player.set(at(30));
    }

    bool begin()
    {
        parts.start(mirror.ports, mirror.defaults, std::move(unplugged), {});
        engine = parts.service.get();
        const auto watch = [this] {
            hasJumpedBack = hasJumpedBack || engine->elapsed() < line;
            line = engine->elapsed();
            seen << engine->title() + u'/' + engine->album();
        };
        for (const auto signal : {&NowPlayingService::titleChanged, &NowPlayingService::albumChanged,
                                  &NowPlayingService::elapsedChanged, &NowPlayingService::isPlayingChanged}) {
            QObject::connect(engine, signal, engine, watch);
        }
        return QTest::qWaitFor([this] { return isShown(Qt::red) && engine->elapsed() >= 30; });
    }

    void playOn(const QVariantMap& other, double from = 0)
    {
        player.set(at(from));
        player.change({{metadata, other}});
    }

    bool isShown(const QColor& cover) const
    {
        return !engine->shownArtwork().isNull() && engine->shownArtwork().pixelColor(4, 4) == cover;
    }

    LogFile log;
    MprisStandIn player{u"mpv"_s};
    Mirror mirror;
    std::unique_ptr<FakeCapture> unplugged = std::make_unique<FakeCapture>();
    FakeCapture* capture = unplugged.get();
    EngineParts parts;
    NowPlayingService* engine = nullptr;
    double line = 0;
    bool hasJumpedBack = false;
    QStringList seen;
};

struct Fault {
    const char* name;
    std::function<void(Stage&)> happens;
    std::function<bool(const Stage&)> isBorne; ///< soon: long before the next poll
};

const std::vector<Fault> faults = {
    {"a seek that its answers do not know of yet",
     [](Stage& stage) {
         stage.player.lie(at(30), moment);
         stage.player.seek(90'000'000);
         stage.player.set(at(92));
     },
     [](const Stage& stage) { return stage.engine->elapsed() >= 92 && !stage.hasJumpedBack; }},
    {"a seek that nobody is told of",
     [](Stage& stage) {
         stage.player.set(at(90));
         stage.engine->refresh();
     },
     [](const Stage& stage) { return stage.engine->elapsed() >= 90; }},
    {"a track that is only said to be another one",
     [](Stage& stage) {
         stage.player.set({{metadata, song(two)}});
         stage.player.invalidate(metadata);
     },
     [](const Stage& stage) { return stage.engine->title() == two; }},
    {"a seek of ours that it does not carry out",
     [](Stage& stage) {
         stage.player.obeysTransport = false;
         stage.engine->seekTo(90);
     },
     [](const Stage& stage) { return stage.engine->elapsed() < 60; }},
    {"another track, and its answers are of the one before",
     [](Stage& stage) {
         stage.player.lie({{u"Position"_s, 150'000'000LL}, {metadata, song(one, Qt::red)}}, moment);
         stage.playOn(song(two, Qt::green), 3);
     },
     [](const Stage& stage) {
         const auto isOne = [](const QString& sight) { return sight.startsWith(one); };
         return stage.isShown(Qt::green) && stage.engine->elapsed() >= 3 && stage.engine->elapsed() < 20 &&
                std::ranges::is_partitioned(stage.seen, isOne);
     }},
    {"the same title and artist on another album",
     [](Stage& stage) { stage.playOn(song(one, Qt::green, two)); },
     [](const Stage& stage) {
         return stage.isShown(Qt::green) && stage.engine->elapsed() < 15 && stage.engine->album() == two;
     }},
    {"the same names, another cover", [](Stage& stage) { stage.playOn(song(one, Qt::green)); },
     [](const Stage& stage) { return stage.isShown(Qt::green) && stage.engine->elapsed() < 15; }},
    {"a cover that comes later",
     [](Stage& stage) {
         stage.playOn(song(two));
         stage.mirror.runLoop.after(0.4, stage.engine, [&stage] {
             stage.player.change({{metadata, song(two, Qt::green)}});
         });
     },
     [](const Stage& stage) { return stage.isShown(Qt::green); }},
    {"no cover", [](Stage& stage) { stage.playOn(song(two)); },
     [](const Stage& stage) {
         return stage.engine->title() == two && stage.engine->shownArtwork().isNull() &&
                !stage.parts.theme->tint();
     }},
    {"a cover that cannot be read",
     [](Stage& stage) {
         QVariantMap other = song(two);
         other[u"mpris:artUrl"_s] = u"data:image/png;base64,AAAA"_s;
         stage.playOn(other);
     },
     [](const Stage& stage) { return stage.engine->shownArtwork().isNull(); }},
    {"a length that is corrected without a word",
     [](Stage& stage) {
         stage.playOn(song(two));
         QVariantMap corrected = song(two);
         corrected[u"mpris:length"_s] = 123'000'000LL;
         stage.player.set({{metadata, corrected}});
     },
     [](const Stage& stage) { return stage.engine->duration() == 123; }},
    {"separators in its texts", [](Stage& stage) { stage.playOn(song(u"A|||B###|"_s, {}, u"||||"_s)); },
     [](const Stage& stage) {
         const QString text = stage.engine->title() + u'/' + stage.engine->album();
         return QString(text).remove(QChar(0x2060)) == u"A|||B###|/||||" && stage.engine->duration() == 200 &&
                stage.engine->artist() == u"Band";
     }},
};

} // namespace

/// What real players do wrong, and what the engine shows of it.
class PlayerFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheTruth_data()
    {
        QTest::addColumn<int>("index");
        for (int i = 0; i < static_cast<int>(faults.size()); ++i) {
            QTest::newRow(faults[i].name) << i;
        }
    }

    void showsTheTruth()
    {
        QFETCH(int, index);
        Stage stage;
        QVERIFY(stage.begin());
        faults[index].happens(stage);
        QTRY_VERIFY_WITH_TIMEOUT(faults[index].isBorne(stage), 2900 / HastyLoop::haste);
        QVERIFY(stage.parts.recentlyPlayed->tracks().size() <= 2);
        // Nobody ever saw the title of one track and the album of another.
        for (const QString& sight : stage.seen) {
            QVERIFY2(!sight.startsWith(u"Not Playing/A") && sight != u"Two/", qPrintable(sight));
        }
    }

    void doesNotChaseAnswers_data()
    {
        QTest::addColumn<bool>("isAnnounced");
        QTest::addColumn<QVariantMap>("lie");
        QTest::addColumn<int>("most"); // questions in a second and a half
        QTest::newRow("it is behind the end") << false << at(300) << 6;
        QTest::newRow("at a change of track, for a moment") << true << at(300) << 8;
        QTest::newRow("it does not say where it is") << true << QVariantMap{{u"Position"_s, u""_s}} << 6;
        QTest::newRow("it answers another place each time") << false << at(10) << 6;
        QTest::newRow("it tells that it no longer knows") << true << QVariantMap() << 20;
    }

    void doesNotChaseAnswers()
    {
        QFETCH(bool, isAnnounced);
        QFETCH(QVariantMap, lie);
        Stage stage;
        QVERIFY(stage.begin());
        stage.player.lie(lie, 60000);
        stage.player.asked.clear();
        bool isOver = false;
        stage.mirror.runLoop.after(1.5, &stage.mirror.observer, [&isOver] { isOver = true; });
        if (isAnnounced) {
            stage.playOn(song(two));
        }
        stage.player.onQuestion = [&] {
            if (lie.isEmpty()) {
                stage.player.invalidate(u"Position"_s);
            } else if (lie == at(10)) {
                stage.player.lie(at(stage.player.asked.size() * 70 % 180), 60000);
            }
        };
        stage.engine->refresh();
        QTRY_VERIFY(isOver);
        QFETCH(int, most);
        QVERIFY2(stage.player.asked.size() <= most, qPrintable(QString::number(stage.player.asked.size())));
        stage.player.onQuestion = {};
    }

    /// Whose object comes after its name, or that is permitted later: it is asked again, sooner if it is
    /// heard.
    void findsLatePlayers()
    {
        for (const auto& [failure, showsLife] :
             {std::pair(noObject, false), {noObject, true}, {accessDenied, false}}) {
            Stage stage;
            stage.player.setTracks({song(one), song(two)});
            stage.player.failures[everything] = failure;
            QTRY_VERIFY(stage.player.failed >= (showsLife ? 6 : 4));
            const bool isRefused = failure == accessDenied;
            QCOMPARE(stage.mirror.automation.permission(BundleId::music),
                     std::optional(isRefused ? Automation::refused : Automation::granted));
            if (!showsLife) { // a question of ours would have it asked again, too
                QCOMPARE(stage.mirror.run(u"tell application \"Music\" to count tracks"_s),
                         isRefused ? u"error -1743"_s : u"0"_s);
            }
            stage.player.failures.clear();
            if (showsLife) {
                stage.player.announce(u"org.mpris.MediaPlayer2.Player"_s, {{u"Volume"_s, 1.0}});
            }
            QTRY_COMPARE_WITH_TIMEOUT(stage.mirror.title(), one, showsLife ? 500 : 5000);
            QTRY_COMPARE(stage.mirror.music()->trackList().tracks().size(), 2);
            QCOMPARE(stage.mirror.automation.permission(BundleId::music), std::optional(Automation::granted));
        }
    }

    void goesOnWhereTheNextPlayerIs()
    {
        Stage stage;
        MprisStandIn second(u"vlc"_s);
        second.set({{status, u"Paused"_s}, {metadata, song(two, Qt::green)}});
        second.set(at(90));
        QVERIFY(stage.begin());
        QTRY_VERIFY(stage.mirror.bus.players().size() == 2 &&
                    stage.mirror.bus.players().constLast()->isReady());
        second.change({{status, u"Playing"_s}});
        QTRY_VERIFY_WITH_TIMEOUT(stage.engine->title() == two && stage.engine->elapsed() >= 90, 1000);
        stage.player.change({{status, u"Paused"_s}});
        second.change({{status, u"Stopped"_s}});
        QTRY_VERIFY_WITH_TIMEOUT(stage.engine->title() != two, 1000);
    }

    /// The display stays with the sound that is heard.
    void pausedPlayersCoverIsNoNews()
    {
        Stage stage;
        QVERIFY(stage.begin());
        stage.player.change({{status, u"Paused"_s}});
        QTRY_VERIFY(!stage.engine->isPlaying());
        QTRY_VERIFY((Q_EMIT stage.capture->liveChanged(true),
                     Q_EMIT stage.capture->bandsPublished({0, 0.5F, 0, 0}),
                     stage.engine->activePlayer() == Player::systemAudio));
        stage.player.change({{metadata, song(one, Qt::green)}});
        const auto& track = stage.mirror.music()->state().track;
        QTRY_COMPARE(track.artworkUrl, song(one, Qt::green)[u"mpris:artUrl"_s].toString());
        QCoreApplication::processEvents(); // what it has posted is dealt with
        QCOMPARE(stage.engine->activePlayer(), Player::systemAudio);
    }
};

QTEST_MAIN(PlayerFaultsTest)
#include "player_faults_test.moc"
