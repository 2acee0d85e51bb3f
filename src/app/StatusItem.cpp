#include "app/StatusItem.h"

#include "app/StatusHostingView.h"
#include "app/StatusItemPlacement.h"
#include "base/RunLoop.h"
#include "platform/StatusBar.h"
#include "platform/UserDefaults.h"
#include "ui/controls/PaintedWindowSize.h"
#include "ui/controls/RoundedRegion.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <utility>

namespace {

constexpr double initialRightInset = 240; // points; left of where panels keep their clock and icons

} // namespace

StatusItem::StatusItem(StatusBar& bar, UserDefaults& defaults, const QString& autosaveName)
    : _bar(bar)
    , _defaults(defaults)
    , _placeKey(QStringLiteral("pellar.statusItem.%1.rightInset").arg(autosaveName))
    , _rightInset(_defaults.real(_placeKey).value_or(initialRightInset))
{
}

StatusItem::~StatusItem() = default;

void StatusItem::setView(StatusHostingView* view)
{
    _view = view;
    connect(_view, &StatusHostingView::itemDragged, this, &StatusItem::moveBy);
    connect(_view, &StatusHostingView::itemDropped, this, &StatusItem::savePlace);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, &StatusItem::followScreen);
    connect(&_bar, &StatusBar::compositingChanged, this, &StatusItem::cutCorners);
    _bar.adopt(*_view);
    followScreen(QGuiApplication::primaryScreen());
    _view->show();
    place();
}

void StatusItem::reveal(RunLoop& runLoop)
{
    constexpr double moment = 3; // seconds
    if (std::exchange(_isRevealed, true)) {
        return;
    }
    const bool wasHidden = !_view->isVisible();
    const auto lift = [this](bool isLifted) {
        _bar.lift(*_view, isLifted);
        place();
    };
    lift(true);
    runLoop.after(moment, this, [this, wasHidden, lift] {
        _isRevealed = false;
        lift(false);
        _view->setVisible(!wasHidden);
    });
}

/// While it is dragged the place may be one beyond the screen: the pointer is there, and comes back.
void StatusItem::moveBy(int dx)
{
    if (!std::exchange(_isDragged, true)) {
        _rightInset = shownInset();
    }
    _rightInset -= dx;
    place();
}

void StatusItem::savePlace()
{
    _isDragged = false;
    _rightInset = shownInset();
    _defaults.setObject(_placeKey, _rightInset);
}

double StatusItem::shownInset() const
{
    const QRect shown(_view->position(), size());
    return StatusItemPlacement::rightInset(_view->screen()->geometry(), shown);
}

QSize StatusItem::size() const
{
    return {static_cast<int>(std::lround(_length.value())), _bar.thickness()};
}

void StatusItem::followScreen(QScreen* screen)
{
    if (screen == nullptr) {
        return;
    }
    _view->setScreen(screen);
    connect(screen, &QScreen::geometryChanged, this, &StatusItem::place, Qt::UniqueConnection);
    place();
}

void StatusItem::place()
{
    if (_view == nullptr) {
        return;
    }
    const QRect frame = StatusItemPlacement::frame(_view->screen()->geometry(), size(), _rightInset);
    const QSize window = paintedWindowSize(size(), _view->devicePixelRatio());
    const bool isResized = _view->size() != window;
    _bar.place(*_view, QRect(frame.topLeft(), window));
    if (isResized) {
        cutCorners();
    }
}

void StatusItem::cutCorners()
{
    if (_view != nullptr) {
        _view->setMask(_bar.isComposited() ? QRegion() : roundedRegion(size(), _corners.value().radius));
        _view->setColor(_bar.isComposited() ? QColor(Qt::transparent) : _corners.value().background);
    }
}
