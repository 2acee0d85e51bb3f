#pragma once

#include "audio/AudioCapture.h"

#include <QList>
#include <QObject>
#include <QProperty>

#include <memory>

class RunLoop;
class UserDefaults;

/// The one door to system-audio capture: mirrors its levels for the views and the engine, and keeps the
/// user's live-visualizer switch, which decides whether capture may run at all.
class AudioBridge : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<float> bands READ bands NOTIFY bandsChanged BINDABLE bindableBands)
    Q_PROPERTY(bool isLive READ isLive NOTIFY isLiveChanged BINDABLE bindableIsLive)
    Q_PROPERTY(
        bool isEnabled READ isEnabled WRITE setEnabled NOTIFY isEnabledChanged BINDABLE bindableIsEnabled)

public:
    /// `capture` may be null where the system offers none: the bridge then never becomes live.
    AudioBridge(RunLoop& runLoop, UserDefaults& defaults, std::unique_ptr<AudioCapture> capture);
    ~AudioBridge() override;

    static AudioBridge& shared();

    /// Four levels, each 0 to 1, bass to treble. `bandsPublished` tells of every frame, also an equal one.
    QList<float> bands() const { return _bands; }
    QBindable<QList<float>> bindableBands() const { return &_bands; }

    /// Whether real sound feeds the bands.
    bool isLive() const { return _isLive; }
    QBindable<bool> bindableIsLive() const { return &_isLive; }

    /// The switch. Every assignment is stored, counts as the user's decision and starts or stops capture.
    bool isEnabled() const { return _isEnabled; }
    void setEnabled(bool enabled);
    QBindable<bool> bindableIsEnabled() const { return &_isEnabled; }

    /// Whether the switch has ever been set.
    bool hasUserDecided() const;

    /// Starts capture if the switch is on.
    void start();
    void stop();

Q_SIGNALS:
    void bandsChanged();
    void bandsPublished(const QList<float>& bands);
    void isLiveChanged();
    void isEnabledChanged();

private:
    void publish(const QList<float>& bands);

    RunLoop& _runLoop;
    UserDefaults& _defaults;
    std::unique_ptr<AudioCapture> _capture;
    Q_OBJECT_BINDABLE_PROPERTY(AudioBridge, QList<float>, _bands, &AudioBridge::bandsChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AudioBridge, bool, _isLive, false, &AudioBridge::isLiveChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(AudioBridge, bool, _isEnabled, false, &AudioBridge::isEnabledChanged)
};
