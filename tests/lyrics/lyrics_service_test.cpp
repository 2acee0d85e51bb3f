#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "lyrics/LyricsService.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/MemoryDefaults.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;
using Answer = HttpStandIn::Answer;
using Manner = HttpStandIn::Manner;

namespace {

const QByteArray exact = "/api/get";
const QByteArray fuzzy = "/api/search";
const QByteArray found = R"({"plainLyrics":"née","syncedLyrics":"[00:01]a\n[00:02]b"})";
const QByteArray foundList = R"([{"plainLyrics":"first"},{"plainLyrics":"second"}])";
const QString none = u"none"_s;

} // namespace

/// The requests are as a server on loopback saw them.
class LyricsServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _server = std::make_unique<HttpStandIn>();
        _defaults.setObject(u"com.orvalen.pellar.endpoint.lyrics"_s, _server->address());
        _appleMusic.reset();
        _service = std::make_unique<LyricsService>(
            _runLoop, _notifications, _defaults, [this](const auto&, QObject* context, auto completion) {
                _runLoop.after(0, context, [this, completion] { completion(_appleMusic); });
            });
        _log.take();
    }

    void asksAsTold()
    {
        _service->fetch(u"A+B & Ü"_s, u"x=y;#"_s, u"50% ?/ 夜"_s);
        QVERIFY(_service->isLoading());
        QCOMPARE(shown(), none);
        QTRY_VERIFY(!_service->isLoading());
        const auto requests = _server->take();
        QCOMPARE(requests.size(), 2);
        const QByteArray track = "track_name=A%2BB%20%26%20%C3%9C&artist_name=x%3Dy%3B%23";
        QCOMPARE(requests[0].path + '?' + requests[0].query,
                 exact + '?' + track + "&album_name=50%25%20%3F%2F%20%E5%A4%9C");
        QCOMPARE(requests[1].path + '?' + requests[1].query, fuzzy + '?' + track);
        for (const auto& request : requests) {
            QVERIFY(request.headers.value("user-agent").startsWith("Pellar/1.0 (http"));
        }
        const QStringList log = _log.take();
        QCOMPARE(log.first(), u"Lyrics: fetch start: title=A+B & Ü artist=x=y;# album=50% ?/ 夜"_s);
        QCOMPARE(log.last(), u"Lyrics: fuzzy miss"_s);
    }

    void endsAs()
    {
        const Answer gone{.status = 404, .body = found};
        const Answer list{.body = foundList};
        const Answer empty{.body = "[]"};
        const std::vector<std::tuple<Answer, Answer, QString>> rows = {
            // exact and fuzzy answer; synced lines, plain text, requests
            {{.body = found}, {}, u"2 née 1"_s},
            {{.body = R"({"plainLyrics":["x"],"syncedLyrics":5})"}, {}, u"0  1"_s},
            {gone, list, u"0 first 2"_s},
            {{.body = R"({"plainLyrics":"x")"}, list, u"0 first 2"_s},
            {list, list, u"0 first 2"_s},
            {{.body = found, .manner = Manner::cutOff}, list, u"0 first 2"_s},
            {empty, empty, u"0  2"_s},
            {empty, {.body = found}, u"0  2"_s}, // an object for a list
            {empty, {.body = R"([{"plainLyrics":"x"},1])"}, u"0  2"_s},
            {{.status = 500}, {.status = 503, .body = foundList}, u"0  2"_s}};
        for (const auto& [exactAnswer, fuzzyAnswer, expected] : rows) {
            init();
            _server->answer(exact, exactAnswer);
            _server->answer(fuzzy, fuzzyAnswer);
            QCOMPARE(fetched(u"A"_s), expected);
            QCOMPARE(_service->current()->trackTitle + _service->current()->artist, u"AB"_s);
        }
    }

    void answersFromCache()
    {
        QCOMPARE(fetched(u"Ä"_s), u"0  2"_s);
        _server->answer(exact, {.body = found});
        QCOMPARE(fetched(u"A"_s), u"2 née 1"_s);
        QCOMPARE(fetched(u"ä"_s, u"b"_s, u"c"_s), u"0  0"_s); // the miss is remembered
        QCOMPARE(fetched(u"a"_s, u"b"_s, u"c"_s), u"2 née 0"_s);
        QCOMPARE(fetched(QString()), u"none 0"_s);
        QCOMPARE(fetched(u"A"_s, QString()), u"none 0"_s);
        QCOMPARE(fetched(u"A"_s, u"B"_s, u"other album"_s), u"2 née 1"_s);

        // Signing in may bring what was missing: the last track is asked for again.
        _server->answer(exact, {.body = R"({"plainLyrics":"new"})"});
        _notifications.post(u"com.orvalen.pellar.appleMusicAuthChanged"_s);
        QTRY_COMPARE(shown(), u"0 new"_s);
        QCOMPARE(fetched(u"A"_s), u"0 new 1"_s);
    }

    void takesAppleMusicFirst()
    {
        _server->answer(exact, {.body = found});
        _appleMusic = QList<SyncedLyric>({{.time = 1, .text = u"x"_s}});
        QCOMPARE(fetched(u"A"_s), u"1  0"_s);
        _appleMusic = QList<SyncedLyric>();
        QCOMPARE(fetched(u"B"_s), u"2 née 1"_s);
        _defaults.setObject(u"com.orvalen.pellar.endpoint.lyrics"_s, u"nowhere"_s);
        QCOMPARE(fetched(u"C"_s), u"none 0"_s);
    }

    void ignoresLateAnswers()
    {
        for (const auto& [held, next, expected] :
             {std::tuple(exact, u"Cached"_s, u"2 née"_s), {fuzzy, u""_s, none}}) {
            init();
            _server->answer(exact, {.body = found});
            QCOMPARE(fetched(u"Cached"_s), u"2 née 1"_s);
            _server->answer(exact, {.status = 404});
            _server->answer(held, {.body = R"([{"plainLyrics":"late"}])", .manner = Manner::held});
            _service->fetch(u"Slow"_s, u"B"_s, u"C"_s);
            QTRY_VERIFY(_server->wasAsked(held));
            _server->release(); // the answer is on its way when it is not wanted any more
            _service->fetch(next, u"B"_s, u"C"_s);
            QCOMPARE(shown(), expected);
            HttpRequest probe;
            probe.url = QUrl(_server->address());
            HttpClient::sendAndWait(probe); // by now it would be there
            QCOMPARE(shown(), expected);
            _server->answer(held, {.status = 404}); // nor was it remembered
            QCOMPARE(fetched(u"Slow"_s), u"0  2"_s);
        }
    }

private:
    /// What is shown at the end, and how many requests it took: "2 née 1", "none 0".
    QString fetched(const QString& title, const QString& artist = u"B"_s, const QString& album = u"C"_s)
    {
        _server->take();
        _service->fetch(title, artist, album);
        const bool isDone = QTest::qWaitFor([this] { return !_service->isLoading(); });
        return isDone ? u"%1 %2"_s.arg(shown()).arg(_server->take().size()) : u"loading"_s;
    }
    QString shown() const
    {
        const auto lyrics = _service->current();
        return lyrics ? u"%1 %2"_s.arg(lyrics->synced.size()).arg(lyrics->plain.value_or(QString())) : none;
    }

    LogFile _log;
    EventLoop _runLoop;
    NotificationCenter _notifications;
    MemoryDefaults _defaults;
    std::unique_ptr<HttpStandIn> _server;
    std::optional<QList<SyncedLyric>> _appleMusic; ///< what it answers
    std::unique_ptr<LyricsService> _service;
};

QTEST_GUILESS_MAIN(LyricsServiceTest)
#include "lyrics_service_test.moc"
