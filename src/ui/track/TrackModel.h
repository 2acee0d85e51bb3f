#pragma once

#include "base/SerialQueue.h"
#include "ui/controls/FrameClock.h"
#include "ui/track/CardLook.h"

#include <QImage>
#include <QObject>
#include <QProperty>
#include <QQmlEngine>

class Appearance;
class NowPlayingService;
class PowerModeManager;
class ThemeManager;

/// What plays, as a card shows it that is large enough for all of it, and what its controls do.
class TrackModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString title READ title NOTIFY contentChanged)
    Q_PROPERTY(QString artist READ artist NOTIFY contentChanged)
    Q_PROPERTY(QString byline READ byline NOTIFY contentChanged)
    Q_PROPERTY(QImage artwork READ artwork NOTIFY artworkChanged)
    Q_PROPERTY(bool hasArtwork READ hasArtwork NOTIFY artworkChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY contentChanged)
    Q_PROPERTY(QString playLabel READ playLabel NOTIFY contentChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY contentChanged)
    Q_PROPERTY(bool isTitleActive READ isTitleActive NOTIFY isTitleActiveChanged)
    Q_PROPERTY(bool isSeekable READ isSeekable NOTIFY timesChanged)
    Q_PROPERTY(double progress READ progress NOTIFY timesChanged)
    Q_PROPERTY(QString elapsedText READ elapsedText NOTIFY timesChanged)
    Q_PROPERTY(QString remainingText READ remainingText NOTIFY timesChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY timesChanged)
    Q_PROPERTY(QVariant scrubFrac READ scrubFrac NOTIFY timesChanged)
    Q_PROPERTY(QImage backdrop READ backdrop NOTIFY lookChanged)
    Q_PROPERTY(CardColors colors READ colors NOTIFY lookChanged)
    Q_PROPERTY(FrameClock* clock READ clock CONSTANT)

public:
    /// What the model builds on. Everything outlives it.
    struct Dependencies {
        NowPlayingService& service;
        ThemeManager& theme;
        PowerModeManager& power;
        Appearance& appearance;
        RunLoop& runLoop;
        FrameClock& clock; ///< of all that moves
    };

    explicit TrackModel(const Dependencies& dependencies);
    ~TrackModel() override;

    /// On one line.
    QString title() const { return _title; }
    QString artist() const { return _artist; }
    /// Artist and album on one line, as far as they are known.
    QString byline() const;
    /// Null when there is none.
    QImage artwork() const { return _artwork; }
    bool hasArtwork() const { return !artwork().isNull(); }
    QString playSymbol() const;
    QString playLabel() const;
    bool isPlaying() const { return _isPlaying; }
    /// Whether a long title may scroll, on a card that somebody looks at or while music plays.
    bool isTitleActive() const { return _isTitleActive; }

    /// Whether the track has places to go to: its length is known.
    bool isSeekable() const { return _duration > 0; }
    /// How far the track is, 0 to 1; while the scrub bar is dragged, where that is. So are the texts.
    double progress() const;
    QString elapsedText() const;   ///< "3:07"
    QString remainingText() const; ///< "-3:07"; empty when unknown
    QString durationText() const;  ///< "3:07"; empty when unknown
    /// Where the scrub bar is dragged, 0 to 1; an invalid variant while it is not.
    QVariant scrubFrac() const;

    QImage backdrop() const { return _look.value().backdrop; }
    CardColors colors() const { return _look.value().colors; }
    FrameClock* clock() { return &_of.clock; }

    /// The scrub bar is dragged to a fraction, which is clamped into 0 to 1; the drag ends there, or is given
    /// up.
    Q_INVOKABLE void scrub(double fraction);
    Q_INVOKABLE void endScrub();
    Q_INVOKABLE void cancelScrub();

    /// Goes on or back in the track, by some seconds.
    Q_INVOKABLE void seekBy(double seconds);

    Q_INVOKABLE void previousTrack();
    Q_INVOKABLE void togglePlayPause();
    Q_INVOKABLE void nextTrack();

Q_SIGNALS:
    void contentChanged();
    void artworkChanged();
    void isTitleActiveChanged();
    void timesChanged();
    void lookChanged();

private:
    void bindContent();
    void followPosition();
    double shownElapsed() const;
    void dress();

    Dependencies _of;
    std::unique_ptr<RunLoop::Timer> _second; ///< until the next second of the track
    bool _isDressing = false;                ///< a look is being made
    bool _isOutdated = false;                ///< and it is not the one that is wanted any more
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, QString, _title, &TrackModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, QString, _artist, &TrackModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, QString, _album, &TrackModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, bool, _isPlaying, &TrackModel::contentChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, bool, _isTitleActive, &TrackModel::isTitleActiveChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, QImage, _artwork, &TrackModel::artworkChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, double, _duration, &TrackModel::timesChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, double, _elapsed, &TrackModel::timesChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, std::optional<double>, _scrubFrac, &TrackModel::timesChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, std::optional<QColor>, _tint, &TrackModel::dress)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, bool, _isDark, &TrackModel::dress)
    Q_OBJECT_BINDABLE_PROPERTY(TrackModel, CardLook, _look, &TrackModel::lookChanged)
    SerialQueue _lookQueue{QStringLiteral("com.orvalen.pellar.card.look")};
};
