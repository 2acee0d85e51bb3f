#include "app/StatusItem.h"

#include "app/StatusHostingView.h"
#include "app/StatusItemPlacement.h"
#include "platform/StatusBar.h"
#include "platform/UserDefaults.h"
#include "ui/controls/RoundedRegion.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>

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

void StatusItem::moveBy(int dx)
{
    _rightInset = StatusItemPlacement::rightInset(_view->screen()->geometry(), _view->geometry()) - dx;
    place();
}

void StatusItem::savePlace()
{
    _rightInset = StatusItemPlacement::rightInset(_view->screen()->geometry(), _view->geometry());
    _defaults.setObject(_placeKey, _rightInset);
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
    const QSize size(static_cast<int>(std::lround(_length.value())), _bar.thickness());
    const bool isResized = _view->size() != size;
    _bar.place(*_view, StatusItemPlacement::frame(_view->screen()->geometry(), size, _rightInset));
    if (isResized) {
        cutCorners();
    }
}

void StatusItem::cutCorners()
{
    if (_view != nullptr) {
        _view->setMask(_bar.isComposited() ? QRegion()
                                           : roundedRegion(_view->size(), _corners.value().radius));
        _view->setColor(_bar.isComposited() ? QColor(Qt::transparent) : _corners.value().background);
    }
}
