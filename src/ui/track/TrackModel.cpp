#include "ui/track/TrackModel.h"

#include "base/ClockText.h"
#include "engine/NowPlayingService.h"
#include "platform/Appearance.h"
#include "prefs/PowerModeManager.h"
#include "prefs/ThemeManager.h"

#include <algorithm>
#include <cmath>
#include <utility>

TrackModel::TrackModel(const Dependencies& dependencies) : _of(dependencies)
{
    bindContent();
    const auto readAppearance = [this] { _isDark = _of.appearance.isDark(); };
    readAppearance();
    _tint.setBinding([this] { return _of.theme.tint(); });
    // The first look is there before the first frame; later ones fade in when they are ready.
    _look = CardLook::make(_artwork, _isDark, _tint);
    connect(&_of.appearance, &Appearance::changed, this, readAppearance);
    connect(this, &TrackModel::artworkChanged, this, &TrackModel::dress);
}

TrackModel::~TrackModel() = default;

void TrackModel::bindContent()
{
    const NowPlayingService* const service = &_of.service;
    _title.setBinding([service] { return service->title().simplified(); });
    _artist.setBinding([service] { return service->artist().simplified(); });
    _album.setBinding([service] { return service->album().simplified(); });
    _artwork.setBinding([service] { return service->shownArtwork(); });
    _isPlaying.setBinding([service] { return service->isPlaying(); });
    _duration.setBinding([service] { return service->duration(); });
    _isTitleActive.setBinding([this] { return _of.power.effectiveMode() != PowerMode::lowPower; });
    connect(service, &NowPlayingService::clockChanged, this, &TrackModel::followPosition);
    followPosition();
    connect(service, &NowPlayingService::titleChanged, this, &TrackModel::cancelScrub);
    connect(service, &NowPlayingService::artistChanged, this, &TrackModel::cancelScrub);
}

/// Wakes up when the next second of the track begins.
void TrackModel::followPosition()
{
    constexpr double grace = 0.005; // seconds: a timer that fires a little early need not fire twice
    const Uptime now = _of.runLoop.uptime();
    const TrackClock clock = _of.service.clock();
    _elapsed = clock.at(now) + grace;
    const auto wait = clock.until(std::floor(_elapsed) + 1, now);
    _second = wait ? _of.runLoop.once(*wait, this, [this] { followPosition(); }) : nullptr;
}

/// One look at a time is made: of what changes meanwhile, the last counts.
void TrackModel::dress()
{
    if (_look.value().backdrop.isNull()) {
        return; // still under construction
    }
    if (std::exchange(_isDressing, true)) {
        _isOutdated = true;
        return;
    }
    _lookQueue.async([this, artwork = artwork(), isDark = _isDark.value(), tint = _tint.value()] {
        QMetaObject::invokeMethod(this, [this, look = CardLook::make(artwork, isDark, tint)] {
            _isDressing = false;
            if (std::exchange(_isOutdated, false)) {
                dress();
            } else {
                _look = look;
            }
        });
    });
}

QString TrackModel::byline() const
{
    QStringList parts = {_artist, _album};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(" — "));
}

QString TrackModel::playSymbol() const
{
    return _isPlaying ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

QString TrackModel::playLabel() const
{
    return _isPlaying ? tr("Pause") : tr("Play");
}

double TrackModel::shownElapsed() const
{
    return _scrubFrac.value() ? *_scrubFrac.value() * _duration : _elapsed.value();
}

double TrackModel::progress() const
{
    return isSeekable() ? std::clamp(shownElapsed() / _duration, 0.0, 1.0) : 0;
}

QString TrackModel::elapsedText() const
{
    return clockText(isSeekable() ? std::min(shownElapsed(), _duration.value()) : shownElapsed());
}

/// Of what is shown, so that the two times make up the length.
QString TrackModel::remainingText() const
{
    return timeRemainingText(_duration, std::floor(shownElapsed()));
}

QString TrackModel::durationText() const
{
    return isSeekable() ? clockText(_duration) : QString();
}

QVariant TrackModel::scrubFrac() const
{
    return _scrubFrac.value() ? QVariant(*_scrubFrac.value()) : QVariant();
}

void TrackModel::scrub(double fraction)
{
    if (isSeekable()) {
        _scrubFrac = std::clamp(fraction, 0.0, 1.0);
    }
}

void TrackModel::endScrub()
{
    if (const auto fraction = _scrubFrac.value()) {
        _of.service.seekTo(*fraction * _duration);
        _scrubFrac = std::nullopt;
    }
}

void TrackModel::cancelScrub()
{
    _scrubFrac = std::nullopt;
}

void TrackModel::seekBy(double seconds)
{
    if (isSeekable()) {
        _of.service.seekTo(std::clamp(_elapsed + seconds, 0.0, _duration.value()));
    }
}

void TrackModel::previousTrack()
{
    _of.service.previousTrack();
}

void TrackModel::togglePlayPause()
{
    _of.service.togglePlayPause();
}

void TrackModel::nextTrack()
{
    _of.service.nextTrack();
}
