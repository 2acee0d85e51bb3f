#include "ui/menu/PellarMenuPanel.h"

#include "platform/Appearance.h"
#include "platform/StatusBar.h"
#include "ui/controls/RoundedRegion.h"
#include "ui/menu/PellarMenuModel.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QQuickView>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace {

Q_LOGGING_CATEGORY(log, "com.orvalen.pellar.menu")

constexpr double frameInterval = 1.0 / 60; // seconds
constexpr double shadowExtent = 28;        // points
constexpr double wheelStep = 40;           // points a notch
constexpr double wheelNotch = 120;

} // namespace

PellarMenuPanel::PellarMenuPanel(const Desktop& desktop, Items items, const QRect& pill)
    : _desktop(desktop)
    , _items(std::move(items))
    , _model(std::make_unique<PellarMenuModel>(_items()))
    , _view(std::make_unique<QQuickView>())
    , _pin(MenuPanelPin::below(pill))
    , _screen(QGuiApplication::screenAt(pill.center()))
{
    if (_screen == nullptr) {
        _screen = QGuiApplication::primaryScreen();
    }
    _view->setFlags(Qt::Popup | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    _view->setTitle(QStringLiteral("Pellar Menu"));
    _view->setColor(Qt::transparent);
    _view->setScreen(_screen);
    _view->setResizeMode(QQuickView::SizeRootObjectToView);
    _view->setInitialProperties({{QStringLiteral("menu"), QVariant::fromValue(_model.get())}});
    _view->setSource(QUrl(QStringLiteral("qrc:/Pellar/Menu/PellarMenuView.qml")));

    connect(_model.get(), &PellarMenuModel::layoutChanged, this, &PellarMenuPanel::resize);
    connect(_model.get(), &PellarMenuModel::chosen, this, [this](const PellarMenuItem& item) {
        const auto choose = item.choose;
        close();
        choose();
    });
    connect(&_desktop.appearance, &Appearance::changed, this, &PellarMenuPanel::dress);
    connect(&_desktop.bar, &StatusBar::compositingChanged, this, [this] {
        dress();
        setFrame(_frame);
    });
    dress();
}

PellarMenuPanel::~PellarMenuPanel()
{
    stopMonitoring();
}

void PellarMenuPanel::present()
{
    const MenuPanelFrame whole = openFrame();
    _model->setVisibleHeight(whole.rect.height());
    _isEntering = true;
    setFrame(MenuPanelFrame::opening(whole, 0));
    _view->show();
    startMonitoring();
    animate(&MenuPanelFrame::opening, whole, MenuPanelFrame::openingSeconds, [this] {
        _isEntering = false;
        resize();
    });
}

void PellarMenuPanel::refresh()
{
    if (!_isClosing) {
        _model->setItems(_items());
    }
}

void PellarMenuPanel::close()
{
    if (_isClosing) {
        return;
    }
    _isClosing = true;
    _isEntering = false;
    stopMonitoring();
    animate(&MenuPanelFrame::closing, _frame, MenuPanelFrame::closingSeconds, [this] { finishClosing(); });
}

bool PellarMenuPanel::isVisible() const
{
    return _view->isVisible();
}

/// Sees what is meant for the program's other windows, too: a click on the pill is one beside the panel.
bool PellarMenuPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWindowType()) {
        return false;
    }
    const bool isOwn = watched == _view.get();
    const auto inList = [this](const QPointF& global) { return global - _frame.rect.topLeft(); };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return handlePress(*static_cast<QMouseEvent*>(event)) || isOwn;
    case QEvent::MouseMove:
        if (isOwn) {
            _model->hover(inList(static_cast<QMouseEvent*>(event)->globalPosition()));
        }
        return isOwn;
    case QEvent::MouseButtonRelease:
        if (isOwn && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            _model->release(inList(static_cast<QMouseEvent*>(event)->globalPosition()));
        }
        return isOwn;
    case QEvent::Wheel:
        if (isOwn) {
            _model->scrollBy(-static_cast<QWheelEvent*>(event)->angleDelta().y() / wheelNotch * wheelStep);
        }
        return isOwn;
    case QEvent::Leave:
        if (isOwn) {
            _model->leave();
        }
        return false;
    case QEvent::KeyPress:
        return handleKey(*static_cast<QKeyEvent*>(event));
    default:
        return false;
    }
}

/// A left click beside the panel only closes it; the right button goes on to what it was meant for.
bool PellarMenuPanel::handlePress(const QMouseEvent& event)
{
    if (!_frame.rect.contains(event.globalPosition())) {
        close();
        return event.button() == Qt::LeftButton;
    }
    if (event.button() == Qt::LeftButton) {
        _model->press(event.globalPosition() - _frame.rect.topLeft());
    }
    return true;
}

bool PellarMenuPanel::handleKey(const QKeyEvent& event)
{
    if (event.key() == Qt::Key_Escape) {
        close();
        return true;
    }
    return _model->pressKey(event.keyCombination());
}

/// `finished` may be the end of the panel.
void PellarMenuPanel::animate(Step step, const MenuPanelFrame& from, double seconds,
                              const std::function<void()>& finished)
{
    const Uptime start = _desktop.runLoop.uptime();
    _animation = _desktop.runLoop.every(frameInterval, this, [=, this] {
        const double progress = (_desktop.runLoop.uptime() - start) / seconds;
        if (progress < 1) {
            setFrame(step(from, progress));
            return;
        }
        setFrame(step(from, 1));
        const auto end = finished;
        _animation.reset();
        end();
    });
}

MenuPanelFrame PellarMenuPanel::openFrame() const
{
    const QScreen* const screen = _screen.isNull() ? QGuiApplication::primaryScreen() : _screen.data();
    const QRect available = screen != nullptr ? screen->availableGeometry() : QRect();
    return MenuPanelFrame::open(_pin, _model->layout().size, available);
}

/// The window is as much larger than the panel as the shadow reaches. No window is lower than a pixel.
void PellarMenuPanel::setFrame(const MenuPanelFrame& frame)
{
    _frame = frame;
    const int margin = static_cast<int>(_model->shadowExtent());
    const QRect panel(static_cast<int>(std::lround(frame.rect.left())),
                      static_cast<int>(std::lround(frame.rect.top())),
                      static_cast<int>(std::lround(frame.rect.width())),
                      std::max(1, static_cast<int>(std::lround(frame.rect.height()))));
    _view->setGeometry(panel.adjusted(-margin, -margin, margin, margin));
    _view->setOpacity(frame.opacity);
    _view->setMask(_desktop.bar.isComposited() ? QRegion()
                                               : roundedRegion(panel.size(), _model->cornerRadius()));
}

void PellarMenuPanel::resize()
{
    const MenuPanelFrame whole = openFrame();
    _model->setVisibleHeight(whole.rect.height());
    if (!_isEntering && !_isClosing && !whole.rect.isEmpty()) {
        setFrame(whole);
    }
}

void PellarMenuPanel::dress()
{
    const bool isBlended = _desktop.bar.isComposited();
    _model->setAppearance(MenuColors::forDesktop(_desktop.appearance.isDark(), isBlended),
                          isBlended ? shadowExtent : 0);
}

/// Another program may hold the pointer or the keyboard; then the panel closes by a second right click only.
void PellarMenuPanel::startMonitoring()
{
    qGuiApp->installEventFilter(this);
    if (!_view->setMouseGrabEnabled(true)) {
        qCWarning(log, "the pointer could not be taken: a click beside the menu does not close it");
    }
    if (!_view->setKeyboardGrabEnabled(true)) {
        qCWarning(log, "the keyboard could not be taken: the menu follows the pointer only");
    }
}

void PellarMenuPanel::stopMonitoring()
{
    qGuiApp->removeEventFilter(this);
    _view->setMouseGrabEnabled(false);
    _view->setKeyboardGrabEnabled(false);
}

void PellarMenuPanel::finishClosing()
{
    _view->hide();
    if (onClose) {
        onClose();
    }
}
