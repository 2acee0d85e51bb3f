#include "accounts/AppleMusicAuthWindow.h"

#include "accounts/AccountsLog.h"
#include "accounts/Resources.h"
#include "base/DebugLog.h"
#include "base/RunLoop.h"
#include "platform/Appearance.h"

#include <QCoreApplication>
#include <QJsonDocument>

namespace {

constexpr double startLimit = 30; // seconds until the web view is there
constexpr double endLimit = 3;    // seconds that the companion has to end by itself
constexpr qint64 longestLine = 1'048'576;
constexpr qsizetype longestLog = 2000; // characters
const QString publicMusicKit = QStringLiteral("https://js-cdn.music.apple.com");

} // namespace

AppleMusicAuthWindow::AppleMusicAuthWindow(Dependencies dependencies, QString developerToken,
                                           std::function<void(const AuthResult&)> onResult)
    : _from(std::move(dependencies))
    , _developerToken(std::move(developerToken))
    , _onResult(std::move(onResult))
    , _loopback(_from.runLoop)
{
    connect(&_companion, &QProcess::readyReadStandardOutput, this, &AppleMusicAuthWindow::readLines);
    connect(&_companion, &QProcess::readyReadStandardError, this, &AppleMusicAuthWindow::readErrors);
    connect(&_companion, &QProcess::finished, this, &AppleMusicAuthWindow::ended);
    connect(&_companion, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            report(
                AuthResult::error(QStringLiteral("the sign-in window cannot be started: ") + _from.program));
        }
    });
}

QString AppleMusicAuthWindow::installedProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/pellar-signin");
}

void AppleMusicAuthWindow::loadAuthPage()
{
    _didLoadPage = true;
    const auto path = resourcePath(QStringLiteral("musickit-auth.html"));
    if (!path) {
        report(AuthResult::error(QStringLiteral("musickit-auth.html not in bundle")));
        return;
    }
    auto html = readText(*path);
    if (!html) {
        report(AuthResult::error(QStringLiteral("could not read musickit-auth.html")));
        return;
    }
    html->replace(publicMusicKit, _from.musicKit.toHtmlEscaped());
    const auto port = _loopback.start(*html);
    _page = port ? QUrl(QStringLiteral("http://127.0.0.1:%1/musickit-auth.html").arg(*port), QUrl::StrictMode)
                 : QUrl::fromLocalFile(*path);
    if (!_page.isValid()) {
        report(AuthResult::error(QStringLiteral("bad loopback URL")));
        return;
    }
    sendPage();
}

void AppleMusicAuthWindow::present()
{
    if (_companion.state() == QProcess::NotRunning) {
        start();
    } else {
        send({{QStringLiteral("present"), true}});
    }
}

void AppleMusicAuthWindow::start()
{
    _companion.start(_from.program,
                     {_from.appearance.isDark() ? QStringLiteral("--dark") : QStringLiteral("--light")});
    _from.runLoop.after(startLimit, this, [this] {
        if (!_isReady) {
            report(AuthResult::error(QStringLiteral("the sign-in window does not answer")));
        }
    });
}

void AppleMusicAuthWindow::dismiss()
{
    _didFinish = true;
    _loopback.stop();
    if (_companion.state() == QProcess::NotRunning) {
        deleteLater();
        return;
    }
    _companion.closeWriteChannel(); // which hides and ends it
    _from.runLoop.after(endLimit, this, [this] { _companion.kill(); });
}

void AppleMusicAuthWindow::readLines()
{
    _companion.setReadChannel(QProcess::StandardOutput);
    while (_companion.canReadLine()) {
        handle(QJsonDocument::fromJson(_companion.readLine(longestLine)).object());
    }
    if (_companion.bytesAvailable() >= longestLine) {
        report(AuthResult::error(QStringLiteral("the sign-in window sends too much")));
        _companion.kill(); // or it would go on for as long as it has to end by itself
    }
}

/// Until the companion says that it is ready there is no secret that it could print.
void AppleMusicAuthWindow::readErrors()
{
    const QByteArrayList lines = _companion.readAllStandardError().split('\n');
    for (const QByteArray& line : lines) {
        if (!_isReady && !line.isEmpty()) {
            dlog(QStringLiteral("sign-in window: ") + QString::fromUtf8(line).left(longestLog));
        }
    }
}

/// A message of the companion: what the page has posted, and what happens to the window.
void AppleMusicAuthWindow::handle(const QJsonObject& message)
{
    const QString event = message.value(QStringLiteral("event")).toString();
    const QString text = message.value(QStringLiteral("text")).toString();
    const QJsonObject body = message.value(QStringLiteral("body")).toObject();
    if (event == QStringLiteral("ready")) {
        _isReady = true;
        sendPage();
    } else if (event == QStringLiteral("pellarAuth")) {
        if (const auto result = authResult(body)) {
            report(*result);
        }
    } else if (event == QStringLiteral("pellarConsole")) {
        const QString line = body.value(QStringLiteral("level")).toString() + u' ' +
                             body.value(QStringLiteral("msg")).toString();
        dlog(withoutSecrets(line.left(longestLog)));
    } else if (event == QStringLiteral("popup")) {
        dlog(QStringLiteral("popup requested for ") + withoutSecrets(text));
    } else if (event == QStringLiteral("popupClosed")) {
        dlog(QStringLiteral("popup closed"));
    } else if (event == QStringLiteral("loadFailed")) {
        report(AuthResult::error(QStringLiteral("page load failed: ") + withoutSecrets(text)));
    } else if (event == QStringLiteral("closed") && !_didFinish) {
        dlog(QStringLiteral("parent window closed without auth result"));
        report(AuthResult::cancelled());
    }
}

void AppleMusicAuthWindow::sendPage()
{
    if (_isReady && !_page.isEmpty()) {
        send({{QStringLiteral("load"), _page.toString()},
              {QStringLiteral("developerToken"), _developerToken}});
    }
}

void AppleMusicAuthWindow::send(const QJsonObject& message)
{
    _companion.write(QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n');
}

void AppleMusicAuthWindow::ended()
{
    readLines();
    if (_didFinish) {
        deleteLater();
    } else if (_companion.exitStatus() == QProcess::CrashExit) {
        report(AuthResult::error(QStringLiteral("the sign-in window has crashed")));
    } else {
        report(AuthResult::error(
            QStringLiteral("the sign-in window has ended with code %1").arg(_companion.exitCode())));
    }
}

void AppleMusicAuthWindow::report(const AuthResult& result)
{
    if (!std::exchange(_didFinish, true)) {
        _onResult(result);
    }
}
