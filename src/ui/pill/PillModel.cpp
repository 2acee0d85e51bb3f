#include "ui/pill/PillModel.h"

#include "base/NotificationCenter.h"
#include "engine/NowPlayingService.h"
#include "platform/Appearance.h"
#include "platform/HapticFeedback.h"
#include "prefs/PillVisibilityManager.h"
#include "prefs/PowerModeManager.h"
#include "prefs/ThemeManager.h"

#include <algorithm>

namespace {

const QString togglePreview = QStringLiteral("com.orvalen.pellar.togglePreview");

} // namespace

PillModel::PillModel(const Dependencies& dependencies, double height)
    : _of(dependencies)
    , _height(height)
    , _visualizer(_of.runLoop, _of.audio, _of.power)
    , _clock(_of.runLoop)
{
    bindContent();
    bindLooks();
}

void PillModel::bindContent()
{
    const NowPlayingService* const service = &_of.service;
    _title.setBinding([service] { return service->title().simplified(); });
    _artwork.setBinding([service] { return service->shownArtwork(); });
    _isIdle.setBinding([service] { return service->activePlayer() == Player::none; });
    _isPlaying.setBinding([service] { return service->isPlaying(); });
    _visualizer.bindableIsPlaying().setBinding([service] { return service->isPlaying(); });
    _progress.setBinding([this, service] {
        const double duration = service->duration();
        const double played = duration > 0 ? std::clamp(service->elapsed() / duration, 0.0, 1.0) : 0;
        return _isSeeking ? _seekFraction.value() : played;
    });
    _isTitleActive.setBinding(
        [this] { return _isHovering || (_isPlaying && _of.power.effectiveMode() != PowerMode::lowPower); });
    connect(service, &NowPlayingService::titleChanged, this, &PillModel::cancelSeek);
    connect(service, &NowPlayingService::artistChanged, this, &PillModel::cancelSeek);
}

void PillModel::bindLooks()
{
    const auto readAppearance = [this] { _isDark = _of.appearance.isDark(); };
    connect(&_of.appearance, &Appearance::changed, this, readAppearance);
    readAppearance();
    _colors.setBinding([this] { return PillColors::forDesktop(_isDark, _of.theme.tint()); });
    _layout.setBinding([this] {
        const PillVisibilityManager& shown = _of.visibility;
        return PillLayout::make({shown.preferredPillWidth(), _height},
                                {.albumArt = shown.showAlbumArt,
                                 .visualizer = shown.showVisualizer,
                                 .previousButton = shown.showPrevButton,
                                 .nextButton = shown.showNextButton,
                                 .title = shown.showTitle});
    });
}

/// The place of a drag was one in the track that is over.
void PillModel::cancelSeek()
{
    if (_isSeeking) {
        cancelPress();
    }
}

QString PillModel::playSymbol() const
{
    return _isPlaying ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

QString PillModel::playLabel() const
{
    return _isPlaying ? tr("Pause") : tr("Play");
}

void PillModel::hover(QPointF point)
{
    // A drag goes on beyond the edges.
    _isHovering = QRectF(0, 0, _of.visibility.preferredPillWidth(), _height).contains(point);
    if (_isSeeking) {
        _seekFraction = _layout.value().progressFraction(point);
        return;
    }
    _gesture.move(point);
    followZones(point);
}

/// What lies under the pointer. The progress line is above the controls.
void PillModel::followZones(QPointF point)
{
    _hoveringBar = _layout.value().isOnProgress(point);
    const auto zone = _hoveringBar ? std::nullopt : _layout.value().zoneAt(point);
    _hoveredZone = zone.value_or(QString());
    _pressedZone = zone == _gesture.pressedZone() ? _hoveredZone.value() : QString();
}

void PillModel::leave()
{
    _isHovering = false;
    _hoveringBar = false;
    _hoveredZone = QString();
    _pressedZone = QString();
}

void PillModel::press(QPointF point)
{
    followZones(point);
    if (_hoveringBar) {
        // Where the length is unknown there is no place to go to.
        _isSeeking = _of.service.duration() > 0;
        hover(point);
        return;
    }
    _gesture.press(point, _layout.value().zoneAt(point));
    followZones(point);
    _holdTimer = _of.runLoop.every(PressGesture::holdDuration, this, [this] { completeHold(); });
}

void PillModel::completeHold()
{
    _holdTimer.reset();
    const QString zone = _hoveredZone;
    if (_gesture.completeHold(zone.isEmpty() ? std::nullopt : std::optional(zone))) {
        _of.haptics.perform(HapticFeedback::Pattern::levelChange);
        _of.notifications.post(togglePreview);
    }
}

void PillModel::release(QPointF point)
{
    _holdTimer.reset();
    if (_isSeeking) {
        _seekFraction = _layout.value().progressFraction(point);
        _of.service.seekTo(_seekFraction * _of.service.duration());
        _isSeeking = false;
        hover(point);
        return;
    }
    followZones(point);
    const QString zone = _hoveredZone;
    const auto tapped = _gesture.release(zone.isEmpty() ? std::nullopt : std::optional(zone));
    followZones(point);
    if (tapped) {
        activate(*tapped);
    }
}

void PillModel::cancelPress()
{
    _holdTimer.reset();
    _gesture.cancel();
    _pressedZone = QString();
    _isSeeking = false;
}

void PillModel::activate(const QString& zone)
{
    if (zone == QStringLiteral("art")) {
        _of.service.openInApp();
    } else if (zone == QStringLiteral("prev")) {
        _of.service.previousTrack();
    } else if (zone == QStringLiteral("play")) {
        _of.service.togglePlayPause();
    } else if (zone == QStringLiteral("next")) {
        _of.service.nextTrack();
    }
}

void PillModel::seekBy(double seconds)
{
    const double duration = _of.service.duration();
    if (duration > 0) {
        _of.service.seekTo(std::clamp(_of.service.position() + seconds, 0.0, duration));
    }
}
