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
    observe();
    updateLayout();
    _visualizer.setPlaying(_of.service.isPlaying());
}

void PillModel::observe()
{
    const NowPlayingService* const service = &_of.service;
    connect(service, &NowPlayingService::titleChanged, this, &PillModel::contentChanged);
    connect(service, &NowPlayingService::activePlayerChanged, this, &PillModel::contentChanged);
    connect(service, &NowPlayingService::titleChanged, this, [this] {
        if (_isSeeking) {
            cancelPress(); // the place was one in another track
        }
    });
    connect(service, &NowPlayingService::artworkChanged, this, &PillModel::artworkChanged);
    connect(service, &NowPlayingService::elapsedChanged, this, &PillModel::progressChanged);
    connect(service, &NowPlayingService::durationChanged, this, &PillModel::progressChanged);
    connect(service, &NowPlayingService::isPlayingChanged, this, [this] {
        _visualizer.setPlaying(_of.service.isPlaying());
        Q_EMIT contentChanged();
        Q_EMIT isTitleActiveChanged();
    });
    // The meter hears of every change of the power mode.
    connect(&_visualizer, &VisualizerModel::changed, this, &PillModel::isTitleActiveChanged);
    connect(this, &PillModel::isHoveringChanged, this, &PillModel::isTitleActiveChanged);

    connect(&_of.appearance, &Appearance::changed, this, &PillModel::colorsChanged);
    connect(&_of.theme, &ThemeManager::tintChanged, this, &PillModel::colorsChanged);

    const PillVisibilityManager* const visibility = &_of.visibility;
    connect(visibility, &PillVisibilityManager::showAlbumArtChanged, this, &PillModel::updateLayout);
    connect(visibility, &PillVisibilityManager::showVisualizerChanged, this, &PillModel::updateLayout);
    connect(visibility, &PillVisibilityManager::showPrevButtonChanged, this, &PillModel::updateLayout);
    connect(visibility, &PillVisibilityManager::showNextButtonChanged, this, &PillModel::updateLayout);
    connect(visibility, &PillVisibilityManager::showTitleChanged, this, &PillModel::updateLayout);
    connect(visibility, &PillVisibilityManager::preferredPillWidthChanged, this, &PillModel::updateLayout);
}

QString PillModel::title() const
{
    return _of.service.title();
}

QImage PillModel::artwork() const
{
    return _of.service.artwork();
}

bool PillModel::isIdle() const
{
    return _of.service.activePlayer() == Player::none;
}

QString PillModel::playSymbol() const
{
    return _of.service.isPlaying() ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

QString PillModel::playLabel() const
{
    return _of.service.isPlaying() ? tr("Pause") : tr("Play");
}

double PillModel::progress() const
{
    if (_isSeeking) {
        return _seekFraction;
    }
    const double duration = _of.service.duration();
    return duration > 0 ? std::clamp(_of.service.elapsed() / duration, 0.0, 1.0) : 0;
}

bool PillModel::isTitleActive() const
{
    return _isHovering || (_of.service.isPlaying() && _of.power.effectiveMode() != PowerMode::lowPower);
}

PillColors PillModel::colors() const
{
    return PillColors::forDesktop(_of.appearance.isDark(), _of.theme.tint());
}

void PillModel::hover(QPointF point)
{
    // A drag goes on beyond the edges.
    _isHovering = QRectF(0, 0, _of.visibility.preferredPillWidth(), _height).contains(point);
    if (_isSeeking) {
        _seekFraction = _layout.progressFraction(point);
        Q_EMIT progressChanged();
        return;
    }
    _gesture.move(point);
    followZones(point);
}

/// What lies under the pointer. The progress line is above the controls.
void PillModel::followZones(QPointF point)
{
    _hoveringBar = _layout.isOnProgress(point);
    const auto zone = _hoveringBar ? std::nullopt : _layout.zoneAt(point);
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
    _gesture.press(point, _layout.zoneAt(point));
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
        _seekFraction = _layout.progressFraction(point);
        _of.service.seekTo(_seekFraction * _of.service.duration());
        _isSeeking = false;
        Q_EMIT progressChanged();
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
    Q_EMIT progressChanged();
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
        _of.service.seekTo(std::clamp(_of.service.elapsed() + seconds, 0.0, duration));
    }
}

void PillModel::updateLayout()
{
    const PillElements elements{.albumArt = _of.visibility.showAlbumArt(),
                                .visualizer = _of.visibility.showVisualizer(),
                                .previousButton = _of.visibility.showPrevButton(),
                                .nextButton = _of.visibility.showNextButton(),
                                .title = _of.visibility.showTitle()};
    _layout = PillLayout::make({_of.visibility.preferredPillWidth(), _height}, elements);
    Q_EMIT layoutChanged();
}
