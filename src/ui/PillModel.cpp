#include "ui/PillModel.h"

#include "engine/NowPlayingService.h"
#include "platform/Appearance.h"
#include "prefs/PillVisibilityManager.h"

#include <algorithm>
#include <cmath>

PillModel::PillModel(NowPlayingService& service, PillVisibilityManager& visibility, Appearance& appearance,
                     double height)
    : _service(service)
    , _visibility(visibility)
    , _appearance(appearance)
    , _height(height)
{
    connect(&_service, &NowPlayingService::titleChanged, this, &PillModel::contentChanged);
    connect(&_service, &NowPlayingService::isPlayingChanged, this, &PillModel::contentChanged);
    connect(&_service, &NowPlayingService::activePlayerChanged, this, &PillModel::contentChanged);
    connect(&_service, &NowPlayingService::elapsedChanged, this, &PillModel::updateProgress);
    connect(&_service, &NowPlayingService::durationChanged, this, &PillModel::updateProgress);
    connect(&_appearance, &Appearance::changed, this, &PillModel::colorsChanged);
    connect(&_visibility, &PillVisibilityManager::showPrevButtonChanged, this, &PillModel::updateLayout);
    connect(&_visibility, &PillVisibilityManager::showNextButtonChanged, this, &PillModel::updateLayout);
    connect(&_visibility, &PillVisibilityManager::showTitleChanged, this, &PillModel::updateLayout);
    connect(&_visibility, &PillVisibilityManager::preferredPillWidthChanged, this, &PillModel::updateLayout);
    updateLayout();
    updateProgress();
}

QString PillModel::title() const
{
    return _service.title();
}

bool PillModel::isIdle() const
{
    return _service.activePlayer() == Player::none;
}

QString PillModel::playSymbol() const
{
    return _service.isPlaying() ? QStringLiteral("pause.fill") : QStringLiteral("play.fill");
}

QString PillModel::playLabel() const
{
    return _service.isPlaying() ? tr("Pause") : tr("Play");
}

PillColors PillModel::colors() const
{
    return PillColors::forDesktop(_appearance.isDark());
}

void PillModel::hover(QPointF point)
{
    _hoveredZone = _layout.zoneAt(point).value_or(QString());
}

void PillModel::leave()
{
    _hoveredZone = QString();
}

void PillModel::tap(QPointF point)
{
    const QString zone = _layout.zoneAt(point).value_or(QString());
    if (zone == QStringLiteral("prev")) {
        _service.previousTrack();
    } else if (zone == QStringLiteral("play")) {
        _service.togglePlayPause();
    } else if (zone == QStringLiteral("next")) {
        _service.nextTrack();
    }
}

void PillModel::updateLayout()
{
    const PillElements elements{.previousButton = _visibility.showPrevButton(),
                                .nextButton = _visibility.showNextButton(),
                                .title = _visibility.showTitle()};
    _layout = PillLayout::make({_visibility.preferredPillWidth(), _height}, elements);
    Q_EMIT layoutChanged();
    updateProgress();
}

/// In steps that can be seen: a second of a long track moves nothing and redraws nothing.
void PillModel::updateProgress()
{
    const double points = _layout.progress.width();
    const double duration = _service.duration();
    const double played = duration > 0 ? std::clamp(_service.elapsed() / duration, 0.0, 1.0) : 0;
    _progress = points > 0 ? std::round(played * points * 2) / (points * 2) : 0;
}
