#pragma once

#include "audio/VisualizerModel.h"
#include "ui/controls/FrameClock.h"
#include "ui/pill/PillColors.h"
#include "ui/pill/PillLayout.h"
#include "ui/pill/PressGesture.h"

#include <QImage>
#include <QObject>
#include <QProperty>
#include <QQmlEngine>
#include <QRectF>

class Appearance;
class AudioBridge;
class HapticFeedback;
class NotificationCenter;
class NowPlayingService;
class PillVisibilityManager;
class PowerModeManager;
class ThemeManager;

/// What the pill shows, and what the left button does on it.
class PillModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString title READ title NOTIFY contentChanged)
    Q_PROPERTY(QImage artwork READ artwork NOTIFY artworkChanged)
    Q_PROPERTY(bool isIdle READ isIdle NOTIFY contentChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY contentChanged)
    Q_PROPERTY(QString playLabel READ playLabel NOTIFY contentChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(bool isTitleActive READ isTitleActive NOTIFY isTitleActiveChanged)
    Q_PROPERTY(bool isSeeking READ isSeeking NOTIFY isSeekingChanged)
    Q_PROPERTY(bool hoveringBar READ hoveringBar NOTIFY hoveringBarChanged)
    Q_PROPERTY(QString hoveredZone READ hoveredZone NOTIFY hoveredZoneChanged)
    Q_PROPERTY(QString pressedZone READ pressedZone NOTIFY pressedZoneChanged)
    Q_PROPERTY(PillColors colors READ colors NOTIFY colorsChanged)
    Q_PROPERTY(PillLayout layout READ layout NOTIFY layoutChanged)
    Q_PROPERTY(VisualizerModel* visualizer READ visualizer CONSTANT)
    Q_PROPERTY(FrameClock* clock READ clock CONSTANT)

public:
    /// What the model builds on. Everything outlives it.
    struct Dependencies {
        NowPlayingService& service;
        PillVisibilityManager& visibility;
        ThemeManager& theme;
        PowerModeManager& power;
        AudioBridge& audio;
        Appearance& appearance;
        RunLoop& runLoop;
        NotificationCenter& notifications;
        HapticFeedback& haptics;
    };

    /// `height` is the status bar's thickness, in points.
    PillModel(const Dependencies& dependencies, double height);

    /// On one line.
    QString title() const { return _title; }
    /// Null when there is none.
    QImage artwork() const { return _artwork; }
    /// Whether nothing plays and nothing is paused, either.
    bool isIdle() const { return _isIdle; }
    QString playSymbol() const;
    QString playLabel() const;
    /// How far the progress line is filled, 0 to 1: what has been played, or where a drag on it is.
    double progress() const { return _progress; }
    /// Whether a long title scrolls: under the pointer and, unless power is to be saved, while music plays.
    bool isTitleActive() const { return _isTitleActive; }
    bool isSeeking() const { return _isSeeking; }
    /// Whether the pointer is over the pill.
    bool isHovering() const { return _isHovering; }
    /// Whether the pointer is over the progress line.
    bool hoveringBar() const { return _hoveringBar; }
    /// The control under the pointer: "art", "prev", "play", "next" or empty.
    QString hoveredZone() const { return _hoveredZone; }
    /// The control under the pointer on which the button is down, or empty.
    QString pressedZone() const { return _pressedZone; }
    PillColors colors() const { return _colors; }
    PillLayout layout() const { return _layout; }
    VisualizerModel* visualizer() { return &_visualizer; }
    FrameClock* clock() { return &_clock; }

    /// Pointer events, in points from the pill's top-left corner. Only the left button counts.
    Q_INVOKABLE void hover(QPointF point);
    Q_INVOKABLE void leave();
    Q_INVOKABLE void press(QPointF point);
    Q_INVOKABLE void release(QPointF point);
    Q_INVOKABLE void cancelPress();

    /// Does what a control is for: "art", "prev", "play" or "next". Any other name does nothing.
    Q_INVOKABLE void activate(const QString& zone);

    /// Goes on or back in the track, by some seconds.
    Q_INVOKABLE void seekBy(double seconds);

Q_SIGNALS:
    void contentChanged();
    void artworkChanged();
    void progressChanged();
    void isTitleActiveChanged();
    void isSeekingChanged();
    void hoveringBarChanged();
    void hoveredZoneChanged();
    void pressedZoneChanged();
    void colorsChanged();
    void layoutChanged();

private:
    void bindContent();
    void bindLooks();
    void cancelSeek();
    void followZones(QPointF point);
    void completeHold();

    Dependencies _of;
    double _height;
    VisualizerModel _visualizer;
    FrameClock _clock;
    PressGesture _gesture;
    std::unique_ptr<RunLoop::Timer> _holdTimer;
    QProperty<double> _seekFraction;
    QProperty<bool> _isDark;
    QProperty<bool> _isHovering;
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, QString, _title, &PillModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, bool, _isIdle, &PillModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, bool, _isPlaying, &PillModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, QImage, _artwork, &PillModel::artworkChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, double, _progress, &PillModel::progressChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, bool, _isTitleActive, &PillModel::isTitleActiveChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, PillColors, _colors, &PillModel::colorsChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, PillLayout, _layout, &PillModel::layoutChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillModel, bool, _isSeeking, false, &PillModel::isSeekingChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillModel, bool, _hoveringBar, false, &PillModel::hoveringBarChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, QString, _hoveredZone, &PillModel::hoveredZoneChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, QString, _pressedZone, &PillModel::pressedZoneChanged)
};
