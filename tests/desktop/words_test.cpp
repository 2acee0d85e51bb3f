#include "audio/PlayerChoice.h"
#include "linux/LinuxPlatform.h"
#include "lyrics/LyricsService.h"
#include "support/EngineParts.h"
#include "support/FakeCapture.h"
#include "support/HttpStandIn.h"
#include "support/MemoryDefaults.h"
#include "support/RealPlayer.h"
#include "ui/lyrics/LyricsModel.h"

/// Words that lie beside the songs of a real player: found, followed, and nobody asked for them.
class WordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheFileBesideTheSong()
    {
        RealPlayer player;
        const auto songs = QDir(player.folder()).entryInfoList(QDir::Files, QDir::Name);
        for (const QFileInfo& song : songs.first(2)) { // the third has none
            QFile file(song.path() + u'/' + song.completeBaseName() + u".lrc");
            QVERIFY(file.open(QIODevice::WriteOnly));
            for (int tenths = 0; tenths < 500; tenths += 13) {
                file.write(u"[0:%1.%2]%3 at %1.%2\r\n"_s.arg(tenths / 10)
                               .arg(tenths % 10)
                               .arg(song.baseName())
                               .toUtf8());
            }
        }
        QVERIFY(player.start());
        HttpStandIn server;
        MemoryDefaults defaults;
        defaults.setObject(u"com.orvalen.pellar.endpoint.lyrics"_s, server.address());
        const PlayerChoice casting(defaults);
        LinuxPlatform linux(casting);
        EngineParts engine;
        engine.start(linux.ports(), defaults, std::make_unique<FakeCapture>(), {});
        RunLoop& runLoop = linux.ports().runLoop;
        LyricsService lyrics(runLoop, linux.ports().notifications, defaults, linux.ports().workspace,
                             [&runLoop](const auto&, QObject* context, auto completion) {
                                 runLoop.after(0, context, [completion] { completion(std::nullopt); });
                             });
        LyricsModel model({.service = *engine.service, .lyrics = lyrics, .runLoop = runLoop});
        model.setShown(this, true);
        const auto line = [&model] { return model.index(model.activeIndex()).data().toString(); };
        for (const QFileInfo& song : songs.first(2)) {
            // The line that is sung begins no more than 1.3 s before where the player is, some tenths
            // allowed.
            QTRY_VERIFY(line().startsWith(song.baseName() + u" at "));
            for (const auto& command : {u"position 20"_s, u"pause"_s, u"position 5.9"_s, u"play"_s}) {
                RealPlayer::tell(command);
                QTRY_VERIFY([&] {
                    const double late = RealPlayer::position() - line().section(u" at "_s, 1).toDouble();
                    return late > -0.2 && late < 1.5 && (command != u"pause" || !engine.service->isPlaying());
                }());
            }
            QCOMPARE(server.requestCount(), 0);
            RealPlayer::tell(u"next"_s);
        }
        QTRY_VERIFY(server.wasAsked("/api/search"));
        QTRY_COMPARE(model.placeholder(), u"No lyrics available"_s);
    }
};

QTEST_MAIN(WordsTest)
#include "words_test.moc"
