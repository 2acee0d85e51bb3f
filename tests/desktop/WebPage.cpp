#include "WebPage.h"

#include "support/Command.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QUrl>

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
if (location.hash !== "#deaf") addEventListener("keydown", event => {
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
    QProcess::execute(QStringLiteral("ffmpeg"),
                      {QStringLiteral("-nostdin"), QStringLiteral("-loglevel"), QStringLiteral("error"),
                       QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                       QStringLiteral("sine=440:duration=60:sample_rate=48000"), soundFile()});
    QFile file(_folder.filePath(QStringLiteral("page.html")));
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

bool WebPage::start(const QString& fragment)
{
    // Without a sandbox it also runs as root; the rest keeps it from looking for its makers' servers.
    _browser.start(
        QStringLiteral("chromium"),
        {QStringLiteral("--no-sandbox"), QStringLiteral("--disable-gpu"), QStringLiteral("--no-first-run"),
         QStringLiteral("--disable-background-networking"), QStringLiteral("--disable-component-update"),
         QStringLiteral("--disable-sync"), QStringLiteral("--autoplay-policy=no-user-gesture-required"),
         QStringLiteral("--user-data-dir=") + _folder.filePath(QStringLiteral("profile")),
         QStringLiteral("--window-size=600,400"),
         QUrl::fromLocalFile(_folder.filePath(QStringLiteral("page.html"))).toString() + fragment});
    return QTest::qWaitFor([this] { return state().startsWith(QStringLiteral("playing")); }, 30'000);
}

QString WebPage::state() const
{
    const QString titles =
        output(QStringLiteral("xdotool"),
               {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                QStringLiteral("toggles"), QStringLiteral("getwindowname")});
    static const QRegularExpression brackets(QStringLiteral("\\[(.*)\\]"));
    return brackets.match(titles).captured(1);
}
