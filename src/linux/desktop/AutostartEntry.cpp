#include "linux/desktop/AutostartEntry.h"

#include "linux/desktop/DesktopEntry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr qint64 longestEntry = 65'536; // bytes

const QString fileName = QStringLiteral("autostart/com.orvalen.pellar.desktop");

/// The entry that counts: the user's own, else the first of the system's. Empty when there is none.
QString presentEntry()
{
    const QString path = QStandardPaths::locate(QStandardPaths::GenericConfigLocation, fileName);
    QFile file(path);
    const bool isOpen = !path.isEmpty() && file.open(QIODevice::ReadOnly);
    return isOpen ? QString::fromUtf8(file.read(longestEntry)) : QString();
}

QString ownPath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)).filePath(fileName);
}

bool isTrue(const QString& entry, const QString& key, bool fallback)
{
    const auto value = DesktopEntry::value(entry, key);
    return value ? *value == QStringLiteral("true") : fallback;
}

/// Whether one of the desktops that are running is in the list.
bool namesThisDesktop(const QString& list)
{
    const QStringList names = list.split(u';', Qt::SkipEmptyParts);
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts);
    return std::any_of(desktops.begin(), desktops.end(),
                       [&](const QString& desktop) { return names.contains(desktop); });
}

bool canStart(const std::optional<QString>& program)
{
    return program && !QStandardPaths::findExecutable(*program).isEmpty();
}

std::optional<QString> write(const QString& entry)
{
    const QString path = ownPath();
    if (!QDir().mkpath(QFileInfo(path).path())) {
        return QStringLiteral("%1 cannot be made").arg(QFileInfo(path).path());
    }
    QSaveFile file(path);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(entry.toUtf8()) >= 0 && file.commit();
    return isWritten ? std::nullopt : std::optional(file.errorString());
}

} // namespace

bool AutostartEntry::isEnabled() const
{
    const QString entry = presentEntry();
    const auto command = DesktopEntry::value(entry, QStringLiteral("Exec"));
    if (!command || isTrue(entry, QStringLiteral("Hidden"), false) ||
        !isTrue(entry, QStringLiteral("X-GNOME-Autostart-enabled"), true)) {
        return false;
    }
    const auto only = DesktopEntry::value(entry, QStringLiteral("OnlyShowIn"));
    const auto never = DesktopEntry::value(entry, QStringLiteral("NotShowIn"));
    const auto condition = DesktopEntry::value(entry, QStringLiteral("TryExec"));
    return (!only || namesThisDesktop(*only)) && (!never || !namesThisDesktop(*never)) &&
           (!condition || canStart(condition)) && canStart(DesktopEntry::program(*command));
}

std::optional<QString> AutostartEntry::setEnabled(bool isEnabled)
{
    const QString common = QStringLiteral("[Desktop Entry]\nType=Application\nName=Pellar\n");
    if (isEnabled) {
        return write(common +
                     QStringLiteral("Comment=Shows and controls what plays\nExec=%1\nTerminal=false\n"
                                    "X-GNOME-Autostart-enabled=true\n")
                         .arg(DesktopEntry::command(_program)));
    }
    QFile own(ownPath());
    if (own.exists() && !own.remove()) {
        return own.errorString();
    }
    // One that came with the system stays in force until the user's own hides it.
    return this->isEnabled() ? write(common + QStringLiteral("Hidden=true\n")) : std::nullopt;
}
