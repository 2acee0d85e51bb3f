#pragma once

#include "audio/AudioBridge.h"
#include "audio/VisualizerBars.h"

#include <QObject>
#include <QProperty>

#include <array>

class PowerModeManager;
class RunLoop;

/// The level meter over time: follows playback, the live levels and the power mode. It has no timer of its
/// own while it moves: who draws it asks `framesPerSecond` how often.
class VisualizerModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isAtRest READ isAtRest NOTIFY changed)

public:
    using Heights = std::array<double, VisualizerBars::barCount>;

    /// Everything given outlives the model.
    VisualizerModel(RunLoop& runLoop, AudioBridge& audio, const PowerModeManager& powerMode);

    /// Whether music plays. When it stops the bars begin to fall.
    QBindable<bool> bindableIsPlaying() { return &_isPlaying; }

    /// Whether the power mode has a meter at all.
    bool isEnabled() const { return _isEnabled; }

    /// How often the meter has to be drawn now; 0 when a still frame will do.
    int framesPerSecond() const { return _framesPerSecond; }

    /// Whether there is a meter, music is stopped and the bars have come down.
    bool isAtRest() const { return _isAtRest; }

    /// Brings the levels up to now, before a frame.
    void catchUp() { _audio.catchUp(); }

    /// The bars as they are to be drawn now, in points. A still frame after a stop is that of the stop.
    Heights heights() const;

Q_SIGNALS:
    /// Something other than the passing of time asks for another frame or another rate.
    void changed();

private:
    void followPlayback();
    void awaitRest();

    RunLoop& _runLoop;
    AudioBridge& _audio;
    VisualizerBars _bars;      ///< without the levels
    QProperty<bool> _isMoving; ///< music plays, or the bars are falling
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(VisualizerModel, bool, _isPlaying, false,
                                         &VisualizerModel::followPlayback)
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerModel, bool, _isEnabled, &VisualizerModel::changed)
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerModel, int, _framesPerSecond, &VisualizerModel::changed)
    Q_OBJECT_BINDABLE_PROPERTY(VisualizerModel, bool, _isAtRest, &VisualizerModel::changed)
};
