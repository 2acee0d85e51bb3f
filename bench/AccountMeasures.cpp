#include "AccountMeasures.h"

#include "PillWatch.h"
#include "ProcessMeter.h"
#include "Table.h"

#include "linux/settings/PlistUserDefaults.h"
#include "support/Command.h"
#include "support/HttpStandIn.h"
#include "support/Program.h"
#include "support/RealPlayer.h"

#include <QDir>
#include <QTest>

#include <algorithm>

namespace {

void write(const QString& path, const QByteArray& text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text);
    }
}

/// A browser that follows where it is sent, and shows nothing.
void makeDefaultBrowser()
{
    write(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications/browser.desktop"),
          "[Desktop Entry]\nType=Application\nName=Browser\n"
          "Exec=curl --silent --location --output /dev/null %u\n");
    write(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/mimeapps.list"),
          "[Default Applications]\nx-scheme-handler/http=browser.desktop\n");
}

void startKeyring(Program& keyring)
{
    keyring.start(QStringLiteral("gnome-keyring-daemon"),
                  {QStringLiteral("--foreground"), QStringLiteral("--replace"), QStringLiteral("--unlock"),
                   QStringLiteral("--components=secrets")});
    keyring.write("password");
    keyring.closeWriteChannel();
}

/// Spotify as far as a sign-in needs it, which it grants at once.
void answerAsSpotify(HttpStandIn& service)
{
    service.answer(
        "/authorize",
        {.status = 302, .headers = {"Location: http://127.0.0.1:7421/pellar-spotify-callback?code=code"}});
    service.answer("/api/token",
                   {.body = R"({"access_token":"access","expires_in":3600,"refresh_token":"refresh"})"});
    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    for (const auto* const name : {"spotifyAccounts", "spotifyWebApi"}) {
        defaults.setObject(QStringLiteral("com.orvalen.pellar.endpoint.") + QLatin1String(name),
                           service.address());
    }
}

QString figure(double megabytes)
{
    return QString::number(megabytes, 'f', 2) + QStringLiteral(" MB");
}

bool isStored()
{
    return run(QStringLiteral("secret-tool lookup server com.orvalen.pellar.spotify user refresh_token")) ==
           QStringLiteral("refresh");
}

/// Opens the settings at the accounts, and closes them again after `work`.
template<typename Work>
void visitAccounts(Work work)
{
    run(QStringLiteral(PELLAR_PROGRAM " --settings"));
    run(QStringLiteral("xdotool search --sync --onlyvisible --name ^Settings windowfocus --sync"));
    QTest::qWait(1000);
    run(QStringLiteral("xdotool key --delay 200 Down Down Down"));
    work();
    (void)QTest::qWaitFor([] {
        run(QStringLiteral("xdotool key Escape"));
        return run(QStringLiteral("xdotool search --onlyvisible --name ^Settings")) == QStringLiteral("?");
    });
}

struct Memory {
    double resident; ///< MB
    double own;      ///< MB of that, without pages of files
};

/// What is left when a window has been closed: the least of some seconds, since what has been given back of
/// programs and libraries comes in again as it is needed.
Memory settled(const ProcessMeter& meter)
{
    constexpr int samples = 50;
    Memory least{.resident = meter.residentMegabytes(), .own = meter.ownMegabytes()};
    for (int i = 0; i < samples; ++i) {
        QTest::qWait(100);
        least.resident = std::min(least.resident, meter.residentMegabytes());
        least.own = std::min(least.own, meter.ownMegabytes());
    }
    return least;
}

} // namespace

void AccountMeasures::measureSignIn(const PillWatch& pill)
{
    const auto row = [](const QString& value, const QString& remark) {
        Table::row(QStringLiteral("growth by connecting an account"), value, QStringLiteral("2 MB"), remark);
    };
    RealPlayer::tell(QStringLiteral("pause")); // or statistics would be written meanwhile
    HttpStandIn service;
    answerAsSpotify(service);
    makeDefaultBrowser();
    Program keyring;
    startKeyring(keyring);
    Program program(QStringLiteral(PELLAR_PROGRAM));
    if (PillWatch::millisecondsUntil([&] { return pill.isDrawn(); }) < 0) {
        row(QStringLiteral("the pill did not appear"), {});
        return;
    }
    const ProcessMeter meter(program.processId());
    for (int i = 0; i < 3; ++i) { // the first opening loads what stays
        visitAccounts([] {});
    }
    const Memory before = settled(meter);
    visitAccounts([] {
        run(QStringLiteral("xdotool key --delay 200 Tab space"));
        (void)QTest::qWaitFor(isStored, 10'000);
    });
    const Memory after = settled(meter);
    row(isStored() ? figure(after.resident - before.resident)
                   : QStringLiteral("the account is not connected"),
        QStringLiteral("before: %1; without pages of files: %2 more")
            .arg(figure(before.resident), figure(after.own - before.own)));
}
