#pragma once

#include "lyrics/LyricsRequest.h"

#include <QObject>
#include <QProperty>
#include <QSet>

#include <optional>

class LyricsService;
class NowPlayingService;

/// Has the lyrics of the track on show looked up while there is a view that shows them, once for all views,
/// and not before. Nothing is asked without a player's track.
class LyricsDemand : public QObject
{
    Q_OBJECT

public:
    LyricsDemand(const NowPlayingService& service, LyricsService& lyrics);

    /// Says whether a view shows lyrics. One that is destroyed does not.
    void setShown(QObject* view, bool isShown);

    bool isShown() const { return _isShown; }

Q_SIGNALS:
    void isShownChanged();

private:
    void ask();

    LyricsService& _lyrics;
    QSet<const QObject*> _views;
    LyricsRequest _asked;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(LyricsDemand, bool, _isShown, false, &LyricsDemand::isShownChanged)
    QProperty<std::optional<LyricsRequest>> _wanted; ///< of an empty title when there is nothing to ask
    QPropertyNotifier _wantedNotifier;
};
