#include "base/Decimal.h"
#include "base/EventLoop.h"
#include "base/NotificationCenter.h"
#include "fuzz/Properties.h"
#include "lyrics/AppleMusicLyricsService.h"
#include "lyrics/LrcParser.h"
#include "lyrics/LyricsService.h"
#include "platform/BundleId.h"
#include "support/FakePlatform.h"
#include "support/HttpStandIn.h"
#include "support/LogFile.h"
#include "support/ManualRunLoop.h"
#include "support/MemoryDefaults.h"

#include <QtTest>

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using Answer = HttpStandIn::Answer;
using Manner = HttpStandIn::Manner;

namespace {

const QByteArray exact = "/api/get";
const QByteArray fuzzy = "/api/search";
const QByteArray found = R"({"plainLyrics":"née","syncedLyrics":"[00:01]a\n[00:02]b"})";
const QByteArray foundList = R"([{"plainLyrics":"first"},{"plainLyrics":"second"}])";
const QString none = u"none"_s;

/// "1.5 Hel lo {1.5-2.0 Hel} {2.0-3.0 lo}", lines by "|".
QString written(const QList<SyncedLyric>& lines)
{
    QStringList result;
    for (const SyncedLyric& line : lines) {
        QString text = decimalText(line.time) + u' ' + line.text;
        for (const LyricWord& word : line.words.value_or(QList<LyricWord>())) {
            text += u" {%1-%2 %3}"_s.arg(decimalText(word.start), decimalText(word.end), word.text);
        }
        result << text;
    }
    return result.join(u'|');
}

/// What it is about, the input, and the lines as above.
using Row = std::array<const char*, 3>;

} // namespace

/// The requests are as a server on loopback saw them.
class LyricsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        _server = std::make_unique<HttpStandIn>();
        _defaults.setObject(u"com.orvalen.pellar.endpoint.lyrics"_s, _server->address());
        _appleMusic.reset();
        _service = std::make_unique<LyricsService>(
            _runLoop, _notifications, _defaults, _workspace,
            [this](const auto&, QObject* context, auto completion) {
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
            {{.body = found, .manner = Manner::cutOff}, list, u"0 first 2"_s},
            {empty, empty, u"0  2"_s},
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
        QCOMPARE(fetched(QString()) + fetched(u"A"_s, QString()), u"none 0none 0"_s);
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

    void findsWordsOnThisMachine()
    {
        const QByteArray lrc = "[00:01]a\r\n[00:02]b\r\n";
        _server->answer(exact, {.body = R"({"plainLyrics":"asked"})"});
        int song = 0;
        for (const auto& [name, content, told, expected, complaints] :
             std::vector<std::tuple<const char*, QByteArray, QString, QString, int>>{
                 {"lines", lrc, u"told"_s, u"2  0"_s, 0},
                 {"a mark", "\xef\xbb\xbf[00:01]a", {}, u"1  0"_s, 0},
                 {"UTF-16", QByteArray::fromHex("fffe5b0030003a0031005d006100"), {}, u"1  0"_s, 0},
                 {"no times", "a\rb", u"told"_s, u"0 a\nb 0"_s, 0},
                 {"nothing in it", " \n", u"[0:1]told"_s, u"1  0"_s, 0},
                 {"bad bytes", "[00:01]\xff", u"told"_s, u"0 told 0"_s, 1},
                 {"a nought", QByteArray("[00:01]\0", 8), {}, u"0 asked 1"_s, 1},
                 {"huge", QByteArray(1'000'000, 'a'), {}, u"0 asked 1"_s, 1},
                 {"folder", {}, {}, u"0 asked 1"_s, 1},
                 {"pipe", {}, {}, u"0 asked 1"_s, 1},
                 {"link to a device", {}, {}, u"0 asked 1"_s, 1},
                 {"no file", {}, {}, u"0 asked 1"_s, 0}}) {
            const QString path = _folder.filePath(u"夜 %1.%2"_s.arg(++song).arg(QLatin1String(name)));
            putFile(path + u".lrc", content, name);
            const QString title = u"Song %1"_s.arg(song);
            tell({.title = title, .location = QUrl::fromLocalFile(path + u".flac"), .lyrics = told});
            _log.take();
            QVERIFY2(fetched(title) == expected, name);
            QVERIFY2(_log.take().filter(path + u".lrc: ").size() == complaints, name);
        }
        QCOMPARE(fetched(u"Song 1"_s), u"2  0"_s); // remembered
        // The player is at another track, or elsewhere; or the file has no tags.
        const QUrl first = QUrl::fromLocalFile(_folder.filePath(u"夜 1.lines.flac"_s));
        tell({.title = u"T"_s, .location = first});
        QCOMPARE(fetched(u"X"_s), u"0 asked 1"_s);
        tell({.title = u"Y"_s, .location = QUrl(u"file://elsewhere"_s + first.path())});
        QCOMPARE(fetched(u"Y"_s), u"0 asked 1"_s);
        tell({.title = u"T"_s, .artist = u""_s, .location = first});
        QCOMPARE(fetched(u"T"_s, {}), u"none 0"_s);
        QTRY_COMPARE(shown(), u"2 "_s);
        _notifications.post(u"com.orvalen.pellar.appleMusicAuthChanged"_s); // asks again for no other track
        QTRY_COMPARE(shown(), u"2 "_s);
    }

    /// Views that take their time over the words are not taken for a disk that does.
    void keepsWhatItHasRead()
    {
        ManualRunLoop loop;
        bool isAsked = false;
        LyricsService service(loop, _notifications, _defaults, _workspace,
                              [&](const auto&...) { isAsked = true; });
        connect(&service, &LyricsService::currentChanged, this, [&loop] { loop.advance(3); });
        const QString path = _folder.filePath(u"slow"_s);
        putFile(path + u".lrc", "[00:01]a", {});
        tell({.title = u"T"_s, .location = QUrl::fromLocalFile(path + u".flac")});
        service.fetch(u"T"_s, u"B"_s, u"C"_s);
        QTRY_VERIFY(!service.isLoading());
        QVERIFY(service.current() && service.current()->hasSynced() && !isAsked);
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

    void readsLrc()
    {
        for (const auto& [name, input, lines] : std::initializer_list<Row>{
                 {"fractions",
                  "[01:02]Hello\n[00:01.5]a\n[00:02.50]b\n[00:03.005]c\n[00:04.x]d\n[00:05.5.9]e",
                  "1.5 a|2.5 b|3.005 c|4.0 d|5.5 e|62.0 Hello"},
                 {"several tags", "[00:20.5][00:10.5] \tChorus ", "10.5 Chorus|20.5 Chorus"},
                 {"no times",
                  "[ar:Someone]\nplain\n\n[la:en]x\n[00: 1]a\n "
                  "[00:02]c\n[00:\u0661]a\n[００:01]b\n[:]b\n[]c\n[0:0:1]d\n"
                  "[9223372036854775807:00]a\n[153722867280912930:60]b\n[00:9223372036854775808]c",
                  ""},
                 {"odd times", "[00::12]a\n[-1:30]a\n[+1:+2]b\n[1:-2]c", "-30.0 a|12.0 a|58.0 c|62.0 b"},
                 {"CR LF ends no line", "[00:01]a\r\n[00:02]b\n[00:03]c", "1.0 a\r\n[00:02]b|3.0 c"},
                 {"a bracket with an accent or a joining mark is another character",
                  "[\u030100:01]a\n[00:02]\u0301b\n[00:03][\u030100:04]c\n\u0600[00:01]a\n[00:04][00\u0600:"
                  "03]b",
                  "3.0 [\u030100:04]c|4.0 [00\u0600:03]b"},
                 {"spaces of any width around", "[00:01]\u3000夜 の\u00a0", "1.0 夜 の"},
             }) {
            QVERIFY2(written(parseSynced(QString::fromUtf8(input))) == QString::fromUtf8(lines), name);
        }
    }

    /// "{1-2 " begins a word from 1 to 2, "}" ends it.
    void readsTTML()
    {
        for (const auto& [name, input, lines] : std::initializer_list<Row>{
                 {"words", "<tt><p begin='1:02.5'>{1-2s Hel}{2-3 lo}</p></tt>",
                  "62.5 Hello {1.0-2.0 Hel} {2.0-3.0 lo}"},
                 {"spaces between and in words", "<tt><p begin='1'>{1-2 a\n} {2-3  b}\n{3-4  }</p></tt>",
                  "1.0 a   b {1.0-2.0 a} {2.0-3.0 b}"},
                 {"times",
                  "<tt><p begin='0:01:02.5'>a</p><p begin='62.5s'>b</p><p begin='1:2:3.5'>c</p>"
                  "<p begin='1::2'>d</p><p begin='-1.5'>e</p></tt>",
                  "62.5 a|62.5 b|3723.5 c|62.0 d|-1.5 e"},
                 {"no times",
                  "<tt><p>a</p><p begin=''>b</p><p begin='s'>c</p><p begin='1ss'>d</p><p begin='1.5:2'>e</p>"
                  "<p begin='1:2:3:4'>f</p><p begin=':5'>g</p><p begin='nan'>h</p><p begin=' 1'>i</p>"
                  "<p begin='9223372036854775808:0'>j</p></tt>",
                  "0.0 a|0.0 b|0.0 c|0.0 d|0.0 e|0.0 f|0.0 g|0.0 h|0.0 i|0.0 j"},
                 {"background vocals",
                  "<tt xmlns:m='u'><p begin='1'>{1-2 a}<span m:role='x-bg'> {2-3 (b)}</span></p></tt>",
                  "1.0 a (b) {1.0-2.0 a} {2.0-3.0 (b)}"},
                 {"translation without times",
                  "<tt><p begin='1'>{1-2 夜}<span>night</span><span begin='1'>yoru</span></p></tt>",
                  "1.0 夜nightyoru {1.0-2.0 夜}"},
                 {"prefixes, declared or not", "<t:tt><t:p t:begin='1' begin='2'>a<t:br/>b</t:p></t:tt>",
                  "2.0 ab"},
                 {"entities of XML", "<tt><p begin='&#49;'>&lt;&amp;&#x266a;<![CDATA[<p>]]><!--c--></p></tt>",
                  "1.0 <&♪<p>"},
                 {"entity of the document", "<!DOCTYPE tt [<!ENTITY e 'hi'>]><tt><p>&e; you</p></tt>",
                  "0.0 hi you"},
                 {"entity of a file",
                  "<!DOCTYPE tt [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><tt><p>a&e;b</p></tt>", "0.0 ab"},
             }) {
            static const QRegularExpression word(u"\\{(\\d)-(\\ds?) "_s);
            QString document = QString::fromUtf8(input).replace(word, u"<span begin='\\1' end='\\2'>"_s);
            const auto read = AppleMusicLyricsService::parseTTML(document.replace(u'}', u"</span>"_s));
            QVERIFY2(written(read.value_or(QList<SyncedLyric>())) == QString::fromUtf8(lines), name);
            QVERIFY2((!read || !read->isEmpty()) && _log.take().isEmpty(), name);
        }
    }

    void refusesBadXml()
    {
        QString bomb = u"<!DOCTYPE tt [<!ENTITY e0 'lol'>"_s;
        for (int i = 1; i < 12; ++i) {
            bomb += u"<!ENTITY e%1 '%2'>"_s.arg(i).arg(u"&e%1;"_s.arg(i - 1).repeated(10));
        }
        const QString flatBomb = u"<!DOCTYPE tt [<!ENTITY e '%1'>]><tt><p>%2</p></tt>"_s;
        for (const QString& document :
             {QString(), u"<tt><p begin='1'>a</p>"_s, u"<tt><p>a</p><p></tt></p>"_s, u"<tt><p>&e;</p></tt>"_s,
              u"<p>"_s.repeated(300'000), QString(bomb + u"]><tt><p>&e11;</p></tt>"),
              QString(bomb + u"]><tt><p begin='&e11;'>a</p></tt>"),
              flatBomb.arg(QString(5000, u'x'), u"&e;"_s.repeated(300'000))}) {
            QVERIFY2(!AppleMusicLyricsService::parseTTML(document), qPrintable(document.left(80)));
            const QStringList log = _log.take();
            QCOMPARE(log.size(), 1);
            QVERIFY(log[0].startsWith(u"Lyrics: XMLParser failed: "));
        }
    }

    void replaysCorpus()
    {
        for (const auto& [folder, holds] :
             {std::pair(u"/lrc"_s, &Properties::holdForLrc), {u"/ttml"_s, &Properties::holdForTTML}}) {
            const auto files = QDir(QStringLiteral(PELLAR_CORPUS) + folder).entryInfoList(QDir::Files);
            QVERIFY(!files.isEmpty());
            for (const QFileInfo& info : files) {
                QFile file(info.filePath());
                QVERIFY(file.open(QIODevice::ReadOnly));
                QVERIFY2(holds(file.readAll()), qPrintable(info.filePath()));
            }
        }
        _log.take();
    }

    void findsActiveLine()
    {
        const auto lines = parseSynced(u"[0:1]a\n[0:2]b\n[0:2]c\n[0:3]d"_s);
        QVERIFY(!activeLine(lines, 0.9) && !activeLine({}, 1));
        QVERIFY(activeLine(lines, 1.0) == 0 && activeLine(lines, 1.9) == 0 && activeLine(lines, 1e9) == 3);
        QCOMPARE(activeLine(lines, 2.0), 2); // of two that begin at once the last
    }

private:
    /// Has a player be at this track, of B's C unless it says otherwise.
    void tell(PlayerTrack track)
    {
        track.artist = track.artist.isNull() ? u"B"_s : track.artist;
        track.album = u"C"_s;
        _workspace.tracks[BundleId::music] = track;
    }
    static void putFile(const QString& path, const QByteArray& content, const QByteArray& kind)
    {
        const QByteArray name = QFile::encodeName(path);
        if (kind == "folder") {
            QDir().mkdir(path);
        } else if (kind == "pipe") {
            mkfifo(name, 0600);
        } else if (kind.startsWith("link")) {
            QFile::link(u"/dev/zero"_s, path);
        } else if (kind != "no file") {
            QFile file(path);
            file.open(QIODevice::WriteOnly);
            file.write(content);
        }
    }

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
    FakeWorkspace _workspace;
    QTemporaryDir _folder;
    std::unique_ptr<HttpStandIn> _server;
    std::optional<QList<SyncedLyric>> _appleMusic; ///< what it answers
    std::unique_ptr<LyricsService> _service;
};

QTEST_GUILESS_MAIN(LyricsTest)
#include "lyrics_test.moc"
