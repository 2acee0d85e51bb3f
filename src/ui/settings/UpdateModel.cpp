#include "ui/settings/UpdateModel.h"

#include <QCoreApplication>

namespace {

/// A reason as the log has it, for people.
QString sentence(QString reason)
{
    reason.replace(0, 1, reason.left(1).toUpper());
    return reason.endsWith(u'.') ? reason : QString(reason + u'.');
}

} // namespace

UpdateModel::UpdateModel(UpdaterManager& updater) : _updater(updater)
{
    connect(&updater, &UpdaterManager::stateChanged, this, &UpdateModel::changed);
}

QString UpdateModel::heading() const
{
    switch (_updater.state()) {
    case UpdaterManager::State::idle:
    case UpdaterManager::State::checking:
        return tr("Checking for updates…");
    case UpdaterManager::State::offered:
        return tr("A new version of Pellar is available");
    case UpdaterManager::State::downloading:
        return tr("Downloading Pellar %1…").arg(_updater.version());
    case UpdaterManager::State::handedOver:
        return tr("Pellar %1 is ready to install").arg(_updater.version());
    case UpdaterManager::State::upToDate:
        return tr("Pellar is up to date");
    case UpdaterManager::State::failed:
        return tr("The update did not work");
    }
    Q_UNREACHABLE();
}

QString UpdateModel::text() const
{
    const QString version = QCoreApplication::applicationVersion();
    switch (_updater.state()) {
    case UpdaterManager::State::offered:
        return tr("Pellar %1 can be installed; you have %2.").arg(_updater.version(), version);
    case UpdaterManager::State::handedOver:
        return tr(
            "The package has been checked and given to your package installer, which asks you for the rest.");
    case UpdaterManager::State::upToDate:
        return tr("%1 is the newest version.").arg(version);
    case UpdaterManager::State::failed:
        return sentence(_updater.message());
    case UpdaterManager::State::idle:
    case UpdaterManager::State::checking:
    case UpdaterManager::State::downloading:
        break;
    }
    return {};
}

bool UpdateModel::isUnderWay() const
{
    return _updater.state() == UpdaterManager::State::checking ||
           _updater.state() == UpdaterManager::State::downloading;
}
