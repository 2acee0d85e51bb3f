#pragma once

#include "audio/AudioCapture.h"
#include "prefs/Preference.h"

#include <QList>
#include <QObject>

#include <memory>

class RunLoop;

/// The one door to system-audio capture: mirrors its levels for the views and the engine, and keeps the
/// user's live-visualizer switch, which decides whether capture may run at all.
class AudioBridge : public QObject
{
    Q_OBJECT

public:
    /// `capture` may be null where the system offers none: the bridge then never becomes live.
    AudioBridge(RunLoop& runLoop, UserDefaults& defaults, std::unique_ptr<AudioCapture> capture);
    ~AudioBridge() override;

    static AudioBridge& shared();

    /// Four levels, each 0 to 1, bass to treble. `bandsPublished` tells of every frame, also an equal one.
    QList<float> bands() const { return _bands; }

    /// Whether real sound feeds the bands.
    bool isLive() const { return _isLive; }

    /// The switch. Every assignment is stored, counts as the user's decision and starts or stops capture.
    bool isEnabled() const { return _isEnabled; }
    void setEnabled(bool enabled);

    /// Whether the switch has ever been set.
    bool hasUserDecided() const;

    /// Starts capture if the switch is on.
    void start();
    void stop();

    /// How often the levels are looked at.
    void setPace(int framesPerSecond);

    /// Publishes the newest levels; without this they are up to a tenth of a second late.
    void catchUp();

Q_SIGNALS:
    void bandsPublished(const QList<float>& bands);

    /// The switch has been set, even if to the same value.
    void enabledSet();

private:
    void publish(const QList<float>& bands);

    RunLoop& _runLoop;
    UserDefaults& _defaults;
    std::unique_ptr<AudioCapture> _capture;
    QList<float> _bands = {0, 0, 0, 0};
    bool _isLive = false;
    Preference<bool> _isEnabled;
};
