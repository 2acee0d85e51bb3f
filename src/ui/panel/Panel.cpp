#include "ui/panel/Panel.h"

#include "platform/Appearance.h"
#include "platform/StatusBar.h"
#include "ui/controls/PaintedWindowSize.h"
#include "ui/controls/RoundedRegion.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.panel")

constexpr double frameInterval = 0.015; // seconds; a screen may leave some frames out
constexpr double shadowReach = 28;      // points

QScreen* screenOf(const QRect& pill)
{
    QScreen* const screen = QGuiApplication::screenAt(pill.center());
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

} // namespace

Panel::Panel(const Desktop& desktop, const PanelStyle& style, const QRect& pill)
    : _desktop(desktop)
    , _style(style)
    , _pill(pill)
    , _screen(screenOf(pill))
    , _view(std::make_unique<QQuickView>())
{
    _view->setFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    _view->setTitle(style.title);
    _view->setColor(Qt::transparent);
    _view->setScreen(_screen);
    _view->setResizeMode(QQuickView::SizeRootObjectToView);
    connect(&_desktop.appearance, &Appearance::changed, this, &Panel::appearanceChanged);
    connect(&_desktop.bar, &StatusBar::compositingChanged, this, [this] {
        Q_EMIT appearanceChanged();
        setFrame(_frame);
    });
}

Panel::~Panel()
{
    stopMonitoring();
}

void Panel::setView(const QUrl& source, const QVariantMap& properties)
{
    QVariantMap all = properties;
    all[QStringLiteral("panel")] = QVariant::fromValue(this);
    _view->engine()->addImportPath(QStringLiteral("qrc:/")); // for the QML files of other modules
    _view->setInitialProperties(all);
    _view->setSource(source);
    const QQuickItem* const root = _view->rootObject();
    Q_ASSERT(root != nullptr);
    connect(root, &QQuickItem::implicitWidthChanged, this, &Panel::resize);
    connect(root, &QQuickItem::implicitHeightChanged, this, &Panel::resize);
}

void Panel::present()
{
    _isEntering = true;
    _open.rect = place();
    Q_EMIT openSizeChanged();
    setFrame(_open.unfolded(0));
    _view->show();
    startMonitoring();
    animate(
        _style.opening.seconds,
        [this](double progress) { setFrame(_open.unfolded(_style.opening.at(progress))); },
        [this] {
            _isEntering = false;
            resize();
        });
}

void Panel::close()
{
    if (_isClosing) {
        return;
    }
    _isClosing = true;
    _isEntering = false;
    stopMonitoring();
    _view->rootObject()->setEnabled(false);
    animate(
        _style.closing.seconds,
        [this, start = _frame](double progress) {
            setFrame(start.unfolded(1 - _style.closing.at(progress)));
        },
        [this] { finishClosing(); });
}

bool Panel::isVisible() const
{
    return _view->isVisible();
}

bool Panel::isDark() const
{
    return _desktop.appearance.isDark();
}

bool Panel::isBlended() const
{
    return _desktop.bar.isComposited();
}

double Panel::shadowExtent() const
{
    return isBlended() ? shadowReach : 0;
}

/// Sees what is meant for the program's other windows, too: a click on the pill is one beside the panel.
bool Panel::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWindowType()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return closesBeside(*static_cast<QMouseEvent*>(event));
    case QEvent::KeyPress:
        return handleKey(watched, *static_cast<QKeyEvent*>(event));
    default:
        return false;
    }
}

/// A view of Qt Quick hands keys on only while its own window has the focus. Where another of the program's
/// windows has it, the item that would have it here gets them.
bool Panel::handleKey(const QObject* watched, QKeyEvent& event)
{
    if (_style.closingKeys.contains(event.key())) {
        close();
        return true;
    }
    if (watched == _view.get()) {
        return false;
    }
    QQuickItem* item = _view->contentItem();
    while (QQuickItem* const inner = item->scopedFocusItem()) {
        item = inner;
    }
    return QCoreApplication::sendEvent(item, &event);
}

/// A left click beside the panel only closes it; the right button goes on to what it was meant for.
bool Panel::closesBeside(const QMouseEvent& event)
{
    if (_frame.rect.contains(event.globalPosition())) {
        return false;
    }
    close();
    if (event.button() == Qt::RightButton) {
        handOn(event);
    }
    return true;
}

/// The panel has the pointer, so a press on another window of the program's has come here.
void Panel::handOn(const QMouseEvent& event) const
{
    const QPointF place = event.globalPosition();
    const auto windows = QGuiApplication::topLevelWindows();
    for (QWindow* const window : windows) {
        if (window != _view.get() && window->isVisible() && window->geometry().contains(place.toPoint())) {
            QMouseEvent press(event.type(), window->mapFromGlobal(place), place, event.button(),
                              event.buttons(), event.modifiers());
            QCoreApplication::sendEvent(window, &press);
            return;
        }
    }
}

/// `finished` may be the end of the panel.
void Panel::animate(double seconds, const std::function<void(double progress)>& step,
                    const std::function<void()>& finished)
{
    const Uptime start = _desktop.runLoop.uptime();
    _animation = _desktop.runLoop.every(frameInterval, this, [=, this] {
        const double progress = std::min(1.0, (_desktop.runLoop.uptime() - start) / seconds);
        step(progress);
        if (progress == 1) {
            const auto end = finished;
            _animation.reset();
            end();
        }
    });
}

/// The window is as much larger than the panel as the shadow reaches. No window is lower than a pixel.
void Panel::setFrame(const PanelFrame& frame)
{
    _frame = frame;
    const int margin = static_cast<int>(shadowExtent());
    const QRect panel(static_cast<int>(std::lround(frame.rect.left())),
                      static_cast<int>(std::lround(frame.rect.top())),
                      static_cast<int>(std::lround(frame.rect.width())),
                      std::max(1, static_cast<int>(std::lround(frame.rect.height()))));
    const QRect window = panel.adjusted(-margin, -margin, margin, margin);
    _view->setGeometry(QRect(window.topLeft(), paintedWindowSize(window.size(), _view->devicePixelRatio())));
    _paneSize = panel.size();
    Q_EMIT paneSizeChanged();
    _view->setColor(isBlended() ? Qt::transparent : glass().bottom); // behind the smooth edges of the corners
    _view->setOpacity(frame.opacity);
    _view->setMask(isBlended() ? QRegion() : roundedRegion(panel.size(), cornerRadius()));
}

/// Of the screen that the pill is on.
QRectF Panel::freePart() const
{
    const QScreen* const screen = _screen.isNull() ? QGuiApplication::primaryScreen() : _screen.data();
    return screen != nullptr ? screen->availableGeometry() : QRect();
}

double Panel::room() const
{
    return freePart().bottom() - QRectF(_pill).bottom() - PanelStyle::pillGap - PanelStyle::screenMargin;
}

QRectF Panel::place() const
{
    const QQuickItem& root = *_view->rootObject();
    return _style.placement(_pill, {root.implicitWidth(), root.implicitHeight()}, freePart());
}

void Panel::resize()
{
    const QRectF open = place();
    if (!isVisible() || _isClosing || open.isEmpty()) {
        return;
    }
    _open.rect = open;
    Q_EMIT openSizeChanged();
    if (!_isEntering) {
        setFrame(_open);
    }
}

/// Another program may hold the pointer or the keyboard; then the panel closes by its owner only.
void Panel::startMonitoring()
{
    _isMonitoring = true;
    qGuiApp->installEventFilter(this);
    _keyboard = _desktop.bar.claimKeyboard(*_view);
    if (_keyboard) {
        connect(_keyboard.get(), &KeyboardClaim::lost, this, &Panel::close);
    }
    if (!_view->setMouseGrabEnabled(true)) {
        qCWarning(log, "the pointer could not be taken: a click beside the panel does not close it");
    }
    if (!_view->setKeyboardGrabEnabled(true)) {
        qCWarning(log, "the keyboard could not be taken: the panel follows the pointer only");
    }
}

/// Once: the next panel may have the pointer and the keyboard by then.
void Panel::stopMonitoring()
{
    if (!std::exchange(_isMonitoring, false)) {
        return;
    }
    qGuiApp->removeEventFilter(this);
    _view->setMouseGrabEnabled(false);
    _view->setKeyboardGrabEnabled(false);
    _keyboard.reset();
}

void Panel::finishClosing()
{
    _view->hide();
    if (onClose) {
        onClose();
    }
}
