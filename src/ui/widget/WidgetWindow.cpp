#include "ui/widget/WidgetWindow.h"

#include "platform/FloatingWindows.h"
#include "platform/StatusBar.h"
#include "platform/UserDefaults.h"
#include "prefs/WidgetManager.h"
#include "ui/controls/RoundedRegion.h"
#include "ui/lyrics/LyricsModel.h"
#include "ui/widget/WidgetPlacement.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QStyleHints>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

const QString frameKey = QStringLiteral("pellar.widget.frame");
constexpr double frameInterval = 0.015; // seconds
constexpr double resetSeconds = 0.35;
constexpr double restSeconds = 0.3; // that the frame has to rest before it is written
constexpr double corner = 16;       // points

QList<QRectF> freeParts()
{
    QList<QRectF> parts;
    const auto screens = QGuiApplication::screens();
    for (const QScreen* const screen : screens) {
        parts << screen->availableGeometry();
    }
    return parts;
}

} // namespace

WidgetWindow::WidgetWindow(const Dependencies& dependencies) : _of(dependencies), _track(_of.track)
{
    setTitle(QStringLiteral("Pellar Widget"));
    setColor(Qt::transparent);
    setResizeMode(QQuickView::SizeRootObjectToView);
    setMinimumSize(WidgetLayout::smallest.toSize());
    setMaximumSize(WidgetLayout::largest.toSize());
    const WidgetManager& shown = _of.manager;
    _elements.setBinding([&shown] {
        return WidgetElements{.artwork = shown.showArtwork,
                              .title = shown.showTitle,
                              .artist = shown.showArtist,
                              .progress = shown.showProgress,
                              .transport = shown.showTransport,
                              .lyric = shown.showLyric};
    });
    _layout.setBinding([this] { return WidgetLayout::make(_size, _elements); });
    setInitialProperties({{QStringLiteral("widget"), QVariant::fromValue(this)},
                          {QStringLiteral("manager"), QVariant::fromValue(&_of.manager)},
                          {QStringLiteral("track"), QVariant::fromValue(&_track)},
                          {QStringLiteral("lyrics"), QVariant::fromValue(&_of.lyrics)}});
    engine()->addImportPath(QStringLiteral("qrc:/")); // for the QML files of other modules
}

/// The view goes before what it shows.
WidgetWindow::~WidgetWindow()
{
    keepPendingFrame(_of.windows.frame(*this));
    setSource({});
}

double WidgetWindow::cornerRadius() const
{
    return corner;
}

void WidgetWindow::present()
{
    const QRectF frame = wantedFrame();
    _of.manager.allowWindowDrag = true;
    _of.windows.adopt(*this, _of.manager.alwaysOnTop);
    _size = frame.size();
    setSource(QUrl(QStringLiteral("qrc:/Pellar/Widget/WidgetView.qml")));
    place(frame);
    show();
    place(frame);
    cutCorners();

    for (const auto changed :
         {&QWindow::xChanged, &QWindow::yChanged, &QWindow::widthChanged, &QWindow::heightChanged}) {
        connect(this, changed, this, &WidgetWindow::keepFrameSoon);
    }
    connect(this, &QWindow::screenChanged, this, &WidgetWindow::cutCorners); // which may have another scale
    connect(&_of.manager, &WidgetManager::positionReset, this, &WidgetWindow::resetPosition);
    connect(&_of.bar, &StatusBar::compositingChanged, this, &WidgetWindow::cutCorners);
    connect(&_track, &TrackModel::lookChanged, this, &WidgetWindow::cutCorners);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &WidgetWindow::followScreens);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &WidgetWindow::watchScreen);
    const auto screens = QGuiApplication::screens();
    for (QScreen* const screen : screens) {
        watchScreen(screen);
    }
    _elementsWatch = _elements.addNotifier([this] { fit(); });
    _onTopWatch =
        _of.manager.alwaysOnTop.addNotifier([this] { _of.windows.setOnTop(*this, _of.manager.alwaysOnTop); });
}

std::optional<QRectF> WidgetWindow::savedFrame() const
{
    const QVariantMap saved = _of.defaults.dictionary(frameKey).value_or(QVariantMap());
    QList<double> sides;
    for (const auto& side :
         {QStringLiteral("x"), QStringLiteral("y"), QStringLiteral("w"), QStringLiteral("h")}) {
        const QVariant value = saved.value(side);
        if (value.typeId() == QMetaType::Double && std::isfinite(value.toDouble())) {
            sides << value.toDouble();
        }
    }
    return sides.size() == 4 ? std::optional(QRectF(sides[0], sides[1], sides[2], sides[3])) : std::nullopt;
}

QRectF WidgetWindow::firstFrame() const
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    QRectF frame = WidgetPlacement::first(
        screen != nullptr ? std::optional<QRectF>(screen->availableGeometry()) : std::nullopt);
    frame.setHeight(WidgetLayout::fittingHeight(_elements));
    return frame;
}

/// Where it was put, or as near to that as the screens that there are allow.
QRectF WidgetWindow::wantedFrame()
{
    const auto saved = savedFrame();
    const QRectF wanted = saved ? WidgetPlacement::reachable(*saved, freeParts()) : firstFrame();
    _isDisplaced = saved && wanted != *saved;
    return wanted;
}

void WidgetWindow::resizeEvent(QResizeEvent* event)
{
    QQuickView::resizeEvent(event);
    _size = QSizeF(event->size());
    cutCorners();
}

void WidgetWindow::hideEvent(QHideEvent* event)
{
    keepPendingFrame(_of.windows.frame(*this));
    QQuickView::hideEvent(event);
}

/// Not a place that it has only because its screen has gone: when that comes back, so does the widget.
void WidgetWindow::keepFrameSoon()
{
    if (!_isDisplaced) {
        _keeping =
            _of.track.runLoop.once(restSeconds, this, [this] { keepPendingFrame(_of.windows.frame(*this)); });
    }
}

void WidgetWindow::keepPendingFrame(const QRectF& frame)
{
    if (!std::exchange(_keeping, nullptr)) {
        return;
    }
    _of.defaults.setObject(frameKey, QVariantMap{{QStringLiteral("x"), frame.x()},
                                                 {QStringLiteral("y"), frame.y()},
                                                 {QStringLiteral("w"), frame.width()},
                                                 {QStringLiteral("h"), frame.height()}});
}

/// On a scaled screen of a size that is whole in pixels, too, so that all of it is painted.
void WidgetWindow::place(const QRectF& frame)
{
    constexpr double step = 4; // points: what scales by quarters makes whole pixels of
    const bool isScaled = devicePixelRatio() != std::floor(devicePixelRatio());
    const auto whole = [isScaled](double side) { return isScaled ? std::round(side / step) * step : side; };
    _of.windows.place(*this, {frame.topLeft(), QSizeF(whole(frame.width()), whole(frame.height()))});
}

void WidgetWindow::watchScreen(QScreen* screen)
{
    connect(screen, &QScreen::availableGeometryChanged, this, &WidgetWindow::followScreens);
    followScreens();
}

/// The window manager may have moved it already, for want of its screen, which Qt does not know yet.
void WidgetWindow::followScreens()
{
    keepPendingFrame(geometry());
    const QRectF wanted = wantedFrame();
    if (isVisible() && _of.windows.frame(*this) != wanted) {
        place(wanted);
    }
}

/// What is visible decides the height.
void WidgetWindow::fit()
{
    _isDisplaced = false;
    place(WidgetPlacement::ofHeight(_of.windows.frame(*this), WidgetLayout::fittingHeight(_elements),
                                    screen()->availableGeometry()));
}

void WidgetWindow::resetPosition()
{
    const QRectF from = _of.windows.frame(*this);
    QRectF to = firstFrame();
    to.setHeight(std::max(to.height(), WidgetPlacement::firstSize.height()));
    const Uptime start = _of.track.runLoop.uptime();
    _isDisplaced = false;
    _animation = _of.track.runLoop.every(frameInterval, this, [=, this] {
        const double left = 1 - std::min(1.0, (_of.track.runLoop.uptime() - start) / resetSeconds);
        const double share = 1 - left * left * left;
        const auto between = [share](double a, double b) { return std::round(a + (b - a) * share); };
        place({between(from.x(), to.x()), between(from.y(), to.y()), between(from.width(), to.width()),
               between(from.height(), to.height())});
        if (left == 0) {
            _animation.reset();
        }
    });
}

/// Where the pointer is on the screen is not to be had from the view.
bool WidgetWindow::event(QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseMove ||
        event->type() == QEvent::MouseButtonRelease) {
        _pointer = static_cast<QMouseEvent*>(event)->globalPosition();
    }
    return QQuickView::event(event);
}

void WidgetWindow::setOverButton(bool isOver)
{
    _of.manager.allowWindowDrag = !isOver;
}

void WidgetWindow::press(QPointF point)
{
    if (_of.manager.allowWindowDrag) {
        _animation.reset();
        _drag = Drag{.edges = WidgetPlacement::edgesAt(point, size()),
                     .start = _pointer,
                     .frame = _of.windows.frame(*this)};
    }
}

/// A press that hardly moves is none: a desktop that was asked to move the window would not hear of its end.
void WidgetWindow::drag()
{
    if (!_drag) {
        return;
    }
    const QPointF way = _pointer - _drag->start;
    const bool isFirst = !_drag->hasBegun;
    if (isFirst && way.manhattanLength() < QGuiApplication::styleHints()->startDragDistance() / 2.0) {
        return;
    }
    _drag->hasBegun = true;
    _isDisplaced = false;
    place(dragged(*_drag, way));
    if (isFirst && (_drag->edges != Qt::Edges() ? _of.windows.startResize(*this, _drag->edges)
                                                : _of.windows.startMove(*this))) {
        _drag.reset();
    }
}

void WidgetWindow::release()
{
    drag();
    _drag.reset();
}

/// The edge that is not dragged stays where it is, also when the limits of the size are reached.
QRectF WidgetWindow::dragged(const Drag& drag, QPointF way)
{
    if (drag.edges == Qt::Edges()) {
        return drag.frame.translated(way);
    }
    QRectF frame = drag.frame;
    const auto grown = [&drag](Qt::Edge before, Qt::Edge after, double size, double way, double least,
                               double most) {
        const double growth = drag.edges.testFlag(after) ? way : drag.edges.testFlag(before) ? -way : 0;
        return std::clamp(size + growth, least, most);
    };
    const QSizeF smallest = WidgetLayout::smallest;
    const QSizeF largest = WidgetLayout::largest;
    frame.setSize(
        {grown(Qt::LeftEdge, Qt::RightEdge, frame.width(), way.x(), smallest.width(), largest.width()),
         grown(Qt::TopEdge, Qt::BottomEdge, frame.height(), way.y(), smallest.height(), largest.height())});
    if (drag.edges.testFlag(Qt::LeftEdge)) {
        frame.moveRight(drag.frame.right());
    }
    if (drag.edges.testFlag(Qt::TopEdge)) {
        frame.moveBottom(drag.frame.bottom());
    }
    return frame;
}

Qt::CursorShape WidgetWindow::cursorAt(QPointF point) const
{
    const Qt::Edges edges = WidgetPlacement::edgesAt(point, size());
    const bool isAside = edges.testAnyFlags(Qt::LeftEdge | Qt::RightEdge);
    const bool isAbove = edges.testAnyFlags(Qt::TopEdge | Qt::BottomEdge);
    if (isAside && isAbove) {
        const bool isFalling = edges.testFlag(Qt::LeftEdge) == edges.testFlag(Qt::TopEdge);
        return isFalling ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor;
    }
    return isAside ? Qt::SizeHorCursor : isAbove ? Qt::SizeVerCursor : Qt::ArrowCursor;
}

void WidgetWindow::cutCorners()
{
    const bool isBlended = _of.bar.isComposited();
    setMask(isBlended ? QRegion() : roundedRegion(size(), corner));
    // Behind the smooth edges of the corners.
    setColor(isBlended ? Qt::transparent : _track.backdrop().pixelColor(0, _track.backdrop().height() - 1));
}
