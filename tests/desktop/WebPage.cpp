#include "WebPage.h"

#include "support/Command.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace {

const char* const page = R"(<!doctype html>
<title>Pellar</title>
<audio autoplay loop src="tone.wav"></audio>
<script>
const audio = document.querySelector("audio");
const counts = {toggles: 0, next: 0, previous: 0};
function show() {
  const counted = Object.entries(counts).map(([name, count]) => `${count} ${name}`).join(" ");
  document.title = `[${audio.paused ? "paused" : "playing"} ${counted}]`;
}
function count(what) { counts[what]++; show(); }
function toggle() { audio.paused ? audio.play() : audio.pause(); }
addEventListener("keydown", event => {
  if (event.key === " ") toggle();
  if (event.key === "N" && event.shiftKey) count("next");
  if (event.key === "P" && event.shiftKey) count("previous");
});
navigator.mediaSession.setActionHandler("nexttrack", () => count("next"));
navigator.mediaSession.setActionHandler("previoustrack", () => count("previous"));
audio.onplay = audio.onpause = () => count("toggles");
show();
</script>
)";

} // namespace

WebPage::WebPage()
{
    QProcess::execute(u"ffmpeg"_s, {u"-nostdin"_s, u"-loglevel"_s, u"error"_s, u"-f"_s, u"lavfi"_s, u"-i"_s,
                                    u"sine=440:duration=60:sample_rate=48000"_s, soundFile()});
    QFile file(_folder.filePath(u"page.html"_s));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(page);
    }
}

WebPage::~WebPage()
{
    _browser.terminate();
    if (!_browser.waitForFinished(5000)) {
        _browser.kill();
        _browser.waitForFinished();
    }
}

bool WebPage::start()
{
    // Without a sandbox it also runs as root; the rest keeps it from looking for its makers' servers.
    _browser.start(u"chromium"_s,
                   {u"--no-sandbox"_s, u"--disable-gpu"_s, u"--no-first-run"_s,
                    u"--disable-background-networking"_s, u"--disable-component-update"_s,
                    u"--disable-sync"_s, u"--autoplay-policy=no-user-gesture-required"_s,
                    u"--user-data-dir="_s + _folder.filePath(u"profile"_s), u"--window-size=600,400"_s,
                    QUrl::fromLocalFile(_folder.filePath(u"page.html"_s)).toString()});
    return QTest::qWaitFor([this] { return state().startsWith(u"playing"_s); }, 30'000);
}

QString WebPage::state() const
{
    const QString titles = output(
        u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"toggles"_s, u"getwindowname"_s});
    static const QRegularExpression brackets(u"\\[(.*)\\]"_s);
    return brackets.match(titles).captured(1);
}
