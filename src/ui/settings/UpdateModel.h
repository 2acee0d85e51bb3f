#pragma once

#include "ui/settings/ForeignTypes.h"

/// What the update window says at each turn.
class UpdateModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(UpdaterManager* updater READ updater CONSTANT)
    Q_PROPERTY(QString heading READ heading NOTIFY changed)
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool isOffer READ isOffer NOTIFY changed)
    Q_PROPERTY(bool isUnderWay READ isUnderWay NOTIFY changed)

public:
    /// The updater outlives the model.
    explicit UpdateModel(UpdaterManager& updater);

    UpdaterManager* updater() const { return &_updater; }
    QString heading() const;
    QString text() const;
    bool isOffer() const { return _updater.state() == UpdaterManager::State::offered; }
    /// Whether there is something to wait for, and to cancel.
    bool isUnderWay() const;

Q_SIGNALS:
    void changed();

private:
    UpdaterManager& _updater;
};
