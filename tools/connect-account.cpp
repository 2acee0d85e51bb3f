#include "accounts/AppleMusicAuthManager.h"
#include "accounts/SpotifyAuthManager.h"
#include "audio/PlayerChoice.h"
#include "base/DebugLog.h"
#include "linux/LinuxPlatform.h"
#include "linux/settings/PlistUserDefaults.h"

#include <QFile>
#include <QGuiApplication>
#include <QStandardPaths>
#include <QTextStream>

#include <cstdio>

namespace {

/// Resident memory of this process in kB.
qint64 residentMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    const QString text = status.open(QIODevice::ReadOnly) ? QString::fromUtf8(status.readAll()) : QString();
    return text.section(QStringLiteral("VmRSS:"), 1).trimmed().section(u' ', 0, 0).toLongLong();
}

/// Prints what an account says of itself whenever that changes; ends when the sign-in does.
template<typename Manager>
void watch(const QString& name, Manager& manager, const Keychain& keychain)
{
    const auto print = [name, &manager, &keychain] {
        QTextStream(stdout) << name << ": connected " << manager.isAuthorized() << ", signing in "
                            << manager.isAuthorizing() << ", kept " << keychain.keepsSecrets() << ", memory "
                            << residentMemory() << " kB " << manager.lastError() << '\n';
    };
    QObject::connect(&manager, &Manager::isAuthorizedChanged, &manager, print);
    QObject::connect(&manager, &Manager::lastErrorChanged, &manager, print);
    QObject::connect(&keychain, &Keychain::keepsSecretsChanged, &manager, print);
    QObject::connect(&manager, &Manager::isAuthorizingChanged, &manager, [&manager, print] {
        print();
        if (!manager.isAuthorizing()) {
            // Seconds for the keychain and its user.
            const double settling = QCoreApplication::arguments().value(2, QStringLiteral("3")).toDouble();
            Platform::current().runLoop.after(settling, &manager, [print] {
                print();
                QCoreApplication::quit();
            });
        }
    });
    print();
}

} // namespace

/// Connects an account as the program does, "spotify" or "apple-music", and prints how that goes; with
/// "disconnect" as the second argument it forgets the account. It takes the services' addresses from the
/// user's settings and keeps what it gets in the user's keyring. A number as the second argument says how
/// many seconds it stays after that, instead of 3.
int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    DebugLog::shared().setPath(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                               QStringLiteral("/connect-account.log"));
    PlistUserDefaults defaults(PlistUserDefaults::defaultPath());
    UserDefaults::setStandard(&defaults);
    const PlayerChoice casting(defaults);
    LinuxPlatform linux(casting);
    Platform::setCurrent(&linux.ports());
    const bool disconnects = arguments.value(2) == QStringLiteral("disconnect");
    constexpr double start = 2; // seconds for the keyring to tell what it holds
    if (arguments.value(1) == QStringLiteral("spotify")) {
        auto& manager = SpotifyAuthManager::shared();
        watch(QStringLiteral("spotify"), manager, linux.ports().keychain);
        linux.ports().runLoop.after(start, &manager, [&manager, disconnects] {
            disconnects ? manager.disconnect() : manager.startAuthorization();
        });
    } else if (arguments.value(1) == QStringLiteral("apple-music")) {
        auto& manager = AppleMusicAuthManager::shared();
        watch(QStringLiteral("apple-music"), manager, linux.ports().keychain);
        linux.ports().runLoop.after(start, &manager, [&manager, disconnects] {
            disconnects ? manager.disconnect() : manager.connectAccount();
        });
    } else {
        std::fputs("usage: connect-account spotify|apple-music [disconnect]\n", stderr);
        return 2;
    }
    if (disconnects) {
        linux.ports().runLoop.after(2 * start, qGuiApp, [] { QCoreApplication::quit(); });
    }
    return QGuiApplication::exec();
}
