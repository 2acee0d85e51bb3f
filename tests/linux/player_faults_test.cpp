#include "Mirror.h"

#include "platform/BundleId.h"
#include "support/EngineParts.h"
#include "support/FakeCapture.h"
#include "support/LogFile.h"

#include <QBuffer>
#include <QDBusObjectPath>
#include <QTest>

namespace {

const QString status = QStringLiteral("PlaybackStatus");
const QString metadata = QStringLiteral("Metadata");
const QString position = QStringLiteral("Position");
const QString one = QStringLiteral("One");
const QString two = QStringLiteral("Two");
const QString everything = QStringLiteral("*");
const QString noObject = QStringLiteral("org.freedesktop.DBus.Error.UnknownObject");
const QString accessDenied = QStringLiteral("org.freedesktop.DBus.Error.AccessDenied");

QVariantMap at(double seconds)
{
    return {{position, static_cast<qlonglong>(seconds * 1e6)}};
}

/// A song whose cover, if it has one, is all of this colour.
QVariantMap song(const QString& title, const QColor& cover = {},
                 const QString& album = QStringLiteral("Album"))
{
    QVariantMap song = MprisStandIn::metadata(QStringLiteral("/t/%1").arg(qHash(title + album)), title,
                                              QStringLiteral("Band"), album, 200);
    if (cover.isValid()) {
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(cover);
        QBuffer png;
        image.save(&png, "png");
        song[QStringLiteral("mpris:artUrl")] =
            QString(u"data:image/png;base64," + QString::fromLatin1(png.data().toBase64()));
    }
    return song;
}

/// A player, and the engine as it sees it over a real bus. It plays "One", with a red cover, from 30 s on.
struct Stage {
    Stage()
    {
        mirror.defaults.setObject(QStringLiteral("pellar.audio.sources"), qlonglong(7));
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
        return QTest::qWaitFor([this] { return shown() == QColor(Qt::red) && engine->elapsed() >= 30; });
    }

    QColor shown() const
    {
        const QImage cover = engine->shownArtwork();
        return cover.isNull() ? QColor() : cover.pixelColor(4, 4);
    }

    LogFile log;
    MprisStandIn player{QStringLiteral("mpv")};
    Mirror mirror;
    std::unique_ptr<FakeCapture> unplugged = std::make_unique<FakeCapture>();
    FakeCapture* capture = unplugged.get();
    EngineParts parts;
    NowPlayingService* engine = nullptr;
    double line = 0;
    bool hasJumpedBack = false;
    QStringList seen;
};

using Act = std::function<void(Stage&)>;
using Check = std::function<bool(const Stage&)>;

struct Fault {
    const char* name;
    Act act;
    Check becomes;                                   ///< soon: long before the next poll
    Check stays = [](const Stage&) { return true; }; ///< at the end
};

void playOn(Stage& stage, const QVariantMap& other, double from = 0)
{
    stage.player.set(at(from));
    stage.player.change({{metadata, other}});
}

const auto& faults()
{
    static const std::vector<Fault> all = {
        {"a seek that its answers do not know of yet",
         [](Stage& stage) {
             stage.player.lie(at(30), 800);
             stage.player.seek(90000000);
             stage.player.set(at(92));
         },
         [](const Stage& stage) { return stage.engine->elapsed() >= 92; },
         [](const Stage& stage) { return !stage.hasJumpedBack; }},
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
         [](const Stage& stage) { return stage.engine->elapsed() < 40; }},
        {"another track, and its answers are of the one before",
         [](Stage& stage) {
             stage.player.lie({{position, qlonglong(150000000)}, {metadata, song(one, Qt::red)}}, 800);
             playOn(stage, song(two, Qt::green), 3);
         },
         [](const Stage& stage) { return stage.engine->title() == two && stage.engine->elapsed() >= 3; },
         [](const Stage& stage) {
             const auto isOne = [](const QString& sight) { return sight.startsWith(one); };
             return stage.engine->elapsed() < 10 && std::ranges::is_partitioned(stage.seen, isOne);
         }},
        {"the same title and artist on another album",
         [](Stage& stage) { playOn(stage, song(one, Qt::green, two)); },
         [](const Stage& stage) {
             return stage.shown() == QColor(Qt::green) && stage.engine->elapsed() < 5 &&
                    stage.engine->album() == two;
         }},
        {"the same names, another cover", [](Stage& stage) { playOn(stage, song(one, Qt::green)); },
         [](const Stage& stage) {
             return stage.shown() == QColor(Qt::green) && stage.engine->elapsed() < 5;
         }},
        {"a cover that comes later",
         [](Stage& stage) {
             playOn(stage, song(two));
             stage.mirror.runLoop.after(0.4, stage.engine, [&stage] {
                 stage.player.change({{metadata, song(two, Qt::green)}});
             });
         },
         [](const Stage& stage) { return stage.shown() == QColor(Qt::green); }},
        {"no cover", [](Stage& stage) { playOn(stage, song(two)); },
         [](const Stage& stage) { return !stage.shown().isValid(); },
         [](const Stage& stage) { return stage.engine->title() == two && !stage.parts.theme->tint(); }},
        {"a cover that cannot be read",
         [](Stage& stage) {
             QVariantMap other = song(two);
             other[QStringLiteral("mpris:artUrl")] = QStringLiteral("data:image/png;base64,AAAA");
             playOn(stage, other);
         },
         [](const Stage& stage) { return !stage.shown().isValid(); }},
        {"a length that is corrected without a word",
         [](Stage& stage) {
             playOn(stage, song(two));
             QVariantMap corrected = song(two);
             corrected[QStringLiteral("mpris:length")] = qlonglong(123000000);
             stage.player.set({{metadata, corrected}});
         },
         [](const Stage& stage) { return stage.engine->duration() == 123; }},
        {"separators in its texts",
         [](Stage& stage) { playOn(stage, song(QStringLiteral("A|||B###|"), {}, QStringLiteral("||||"))); },
         [](const Stage& stage) {
             const QString text = stage.engine->title() + u'/' + stage.engine->album();
             return QString(text).remove(QChar(0x2060)) == QStringLiteral("A|||B###|/||||") &&
                    stage.engine->duration() == 200 && stage.engine->artist() == QStringLiteral("Band");
         },
         [](const Stage& stage) { return stage.parts.recentlyPlayed->tracks().size() == 2; }},
        {"a stop",
         [](Stage& stage) {
             stage.player.change({{status, QStringLiteral("Stopped")}});
         },
         [](const Stage& stage) {
             return stage.engine->title() == QStringLiteral("Not Playing") && stage.engine->duration() == 0;
         }},
        {"its end", [](Stage& stage) { stage.player.disown(QStringLiteral("org.mpris.MediaPlayer2.mpv")); },
         [](const Stage& stage) { return stage.engine->title() == QStringLiteral("Not Playing"); }},
    };
    return all;
}

} // namespace

/// What real players do wrong, and what the engine shows of it.
class PlayerFaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheTruth_data();
    void showsTheTruth();
    void doesNotChaseAnswers_data();
    void doesNotChaseAnswers();
    void findsLatePlayers_data();
    void findsLatePlayers();
    void goesOnWhereTheNextPlayerIs();
    void pausedPlayersCoverIsNoNews();
};

void PlayerFaultsTest::showsTheTruth_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < static_cast<int>(faults().size()); ++i) {
        QTest::newRow(faults()[static_cast<size_t>(i)].name) << i;
    }
}

void PlayerFaultsTest::showsTheTruth()
{
    QFETCH(int, index);
    const Fault& fault = faults()[static_cast<size_t>(index)];
    Stage stage;
    QVERIFY(stage.begin());
    fault.act(stage);
    QTRY_VERIFY_WITH_TIMEOUT(fault.becomes(stage), 2900);
    QVERIFY(fault.stays(stage));
    // Nobody ever saw the title of one track and the album of another.
    for (const QString& sight : stage.seen) {
        QVERIFY2(!sight.startsWith(QStringLiteral("Not Playing/A")) && sight != QStringLiteral("Two/"),
                 qPrintable(sight));
    }
}

void PlayerFaultsTest::doesNotChaseAnswers_data()
{
    QTest::addColumn<bool>("isAnnounced");
    QTest::addColumn<QVariantMap>("lie");
    QTest::addColumn<int>("most"); // questions in a second and a half
    QTest::newRow("it is behind the end") << false << at(300) << 6;
    QTest::newRow("at a change of track, for a moment") << true << at(300) << 6;
    QTest::newRow("it answers another place each time") << false << at(10) << 6;
    QTest::newRow("it tells that it no longer knows") << true << QVariantMap() << 20;
}

void PlayerFaultsTest::doesNotChaseAnswers()
{
    QFETCH(bool, isAnnounced);
    QFETCH(QVariantMap, lie);
    QFETCH(int, most);
    Stage stage;
    QVERIFY(stage.begin());
    stage.player.lie(lie, 60000);
    stage.player.asked.clear();
    bool isOver = false;
    stage.mirror.runLoop.after(1.5, &stage.mirror.observer, [&isOver] { isOver = true; });
    if (isAnnounced) {
        playOn(stage, song(two));
    }
    stage.player.onQuestion = [&] {
        if (lie.isEmpty()) {
            stage.player.invalidate(position);
        } else if (lie == at(10)) {
            stage.player.lie(at(stage.player.asked.size() * 70 % 180), 60000);
        }
    };
    stage.engine->refresh();
    QTRY_VERIFY(isOver);
    QVERIFY2(stage.player.asked.size() <= most, qPrintable(QString::number(stage.player.asked.size())));
    stage.player.onQuestion = {};
}

void PlayerFaultsTest::findsLatePlayers_data()
{
    QTest::addColumn<QString>("failure");
    QTest::addColumn<bool>("showsLife");
    QTest::newRow("its object comes after its name") << noObject << false;
    QTest::newRow("much later, with a signal") << noObject << true;
    QTest::newRow("permitted later") << accessDenied << false;
}

void PlayerFaultsTest::findsLatePlayers()
{
    QFETCH(QString, failure);
    QFETCH(bool, showsLife);
    Stage stage;
    stage.player.setTracks({song(one), song(two)});
    stage.player.failures[everything] = failure;
    QTRY_VERIFY_WITH_TIMEOUT(stage.player.failed >= (showsLife ? 6 : 4), 10000);
    const bool isRefused = failure == accessDenied;
    QCOMPARE(stage.mirror.automation.permission(BundleId::music),
             std::optional(isRefused ? Automation::refused : Automation::granted));
    QCOMPARE(stage.mirror.run(QStringLiteral("tell application \"Music\" to count tracks")),
             isRefused ? QStringLiteral("error -1743") : QStringLiteral("0"));
    stage.player.failures.clear();
    if (showsLife) {
        stage.player.seek(30000000);
        QTRY_COMPARE_WITH_TIMEOUT(stage.mirror.title(), one, 500);
    }
    QTRY_COMPARE(stage.mirror.title(), one);
    QTRY_COMPARE(stage.mirror.music()->trackList().tracks().size(), 2);
    QCOMPARE(stage.mirror.automation.permission(BundleId::music), std::optional(Automation::granted));
}

void PlayerFaultsTest::goesOnWhereTheNextPlayerIs()
{
    Stage stage;
    MprisStandIn second(QStringLiteral("vlc"));
    second.set({{status, QStringLiteral("Paused")}, {metadata, song(two, Qt::green)}});
    second.set(at(90));
    QVERIFY(stage.begin());
    QTRY_VERIFY(stage.mirror.bus.players().size() == 2 && stage.mirror.bus.players().constLast()->isReady());
    second.change({{status, QStringLiteral("Playing")}});
    QTRY_VERIFY_WITH_TIMEOUT(stage.engine->title() == two && stage.engine->elapsed() >= 90, 1000);
    stage.player.change({{status, QStringLiteral("Paused")}});
    second.change({{status, QStringLiteral("Stopped")}});
    QTRY_VERIFY_WITH_TIMEOUT(stage.engine->title() != two, 1000);
}

/// The display stays with the sound that is heard.
void PlayerFaultsTest::pausedPlayersCoverIsNoNews()
{
    Stage stage;
    QVERIFY(stage.begin());
    stage.player.change({{status, QStringLiteral("Paused")}});
    QTRY_VERIFY(!stage.engine->isPlaying());
    QTRY_VERIFY_WITH_TIMEOUT((Q_EMIT stage.capture->liveChanged(true),
                              Q_EMIT stage.capture->bandsPublished({0, 0.5F, 0, 0}),
                              stage.engine->activePlayer() == Player::systemAudio),
                             5000);
    stage.player.change({{metadata, song(one, Qt::green)}});
    const auto& track = stage.mirror.music()->state().track;
    QTRY_COMPARE(track.artworkUrl, song(one, Qt::green)[QStringLiteral("mpris:artUrl")].toString());
    QCoreApplication::processEvents(); // what it has posted is dealt with
    QCOMPARE(stage.engine->activePlayer(), Player::systemAudio);
}

QTEST_MAIN(PlayerFaultsTest)
#include "player_faults_test.moc"
