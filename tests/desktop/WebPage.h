#pragma once

#include "support/Command.h"

#include <QtTest>

using namespace Qt::Literals::StringLiterals;

/// A page with a sound in Chromium. It plays a 440 Hz tone from the start, pauses and plays on a space, and
/// counts "next" and "previous" on Shift+N, Shift+P and the browser's own media commands.
class WebPage
{
public:
    WebPage()
    {
        run(u"ffmpeg -nostdin -loglevel error -f lavfi -i sine=440:duration=60:sample_rate=48000 " +
            soundFile());
        QFile file(_folder.filePath(u"page.html"_s));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(page);
        }
    }
    ~WebPage()
    {
        _browser.terminate();
        if (!_browser.waitForFinished(5000)) {
            _browser.kill();
            _browser.waitForFinished();
        }
    }

    /// With "#deaf", keys do nothing.
    bool start(const QString& fragment = {})
    {
        // Without a sandbox it also runs as root; the rest keeps it from looking for its makers' servers.
        const auto options = QStringLiteral(
            "--no-sandbox --disable-gpu --no-first-run --disable-background-networking "
            "--disable-component-update --disable-sync --window-size=600,400 "
            "--autoplay-policy=no-user-gesture-required --user-data-dir=%1/profile file://%1/page.html%2");
        _browser.start(u"chromium"_s, QProcess::splitCommand(options.arg(_folder.path(), fragment)));
        return QTest::qWaitFor([this] { return state().startsWith(u"playing"_s); }, 30'000);
    }

    /// What the page says of itself, as in "playing 0 toggles 1 next 0 previous"; empty before it is there.
    QString state() const
    {
        const QString titles = run(u"xdotool search --onlyvisible --name toggles getwindowname"_s);
        static const QRegularExpression brackets(u"\\[(.*)\\]"_s);
        return brackets.match(titles).captured(1);
    }

    /// The tone, a minute of it.
    QString soundFile() const { return _folder.filePath(u"tone.wav"_s); }

private:
    static constexpr auto page = R"(<!doctype html>
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

    QTemporaryDir _folder;
    QProcess _browser;
};
