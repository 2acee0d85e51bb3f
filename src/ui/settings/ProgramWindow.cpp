#include "ui/settings/ProgramWindow.h"

#include "platform/UserDefaults.h"
#include "ui/settings/AppIcon.h"
#include "ui/settings/Look.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQmlEngine>
#include <QScreen>

namespace {

/// Whether enough of a window can be seen there to take hold of it.
bool isWithinReach(const QRect& frame)
{
    constexpr int enough = 80; // points
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&frame](const QScreen* screen) {
        const QRect shown = screen->availableGeometry() & frame;
        return shown.width() >= enough && shown.height() >= enough && shown.top() == frame.top();
    });
}

} // namespace

ProgramWindow::ProgramWindow(const Desktop& desktop, const Style& style) : _desktop(desktop), _style(style)
{
    setTitle(style.title);
    setIcon(appIcon());
    setResizeMode(SizeRootObjectToView);
    setMinimumSize(style.minimumSize);
    Look::follow(*engine(), desktop.appearance);
    engine()->addImportPath(QStringLiteral("qrc:/")); // for the QML files of other modules
}

/// The program may quit with the window open.
ProgramWindow::~ProgramWindow()
{
    if (isVisible()) {
        rememberPlace();
    }
    setSource({}); // the view goes before what it shows
    if (_desktop.closed) {
        _desktop.closed();
    }
}

void ProgramWindow::setView(const QString& file, std::unique_ptr<QObject> model)
{
    _model = std::move(model);
    setInitialProperties({{QStringLiteral("model"), QVariant::fromValue(_model.get())}});
    setSource(QUrl(QStringLiteral("qrc:/Pellar/Settings/") + file));
    Q_ASSERT(rootObject() != nullptr);
}

void ProgramWindow::present()
{
    if (!isVisible()) {
        restorePlace();
        show();
    }
    raise();
    requestActivate();
}

void ProgramWindow::keyPressEvent(QKeyEvent* event)
{
    QQuickView::keyPressEvent(event);
    if (event->isAccepted()) {
        return;
    }
    if (event->matches(QKeySequence::Close) || event->key() == Qt::Key_Escape) {
        close();
    }
}

void ProgramWindow::closeEvent(QCloseEvent* event)
{
    rememberPlace();
    QQuickView::closeEvent(event);
    if (onClose) {
        onClose();
    }
    deleteLater();
}

void ProgramWindow::restorePlace()
{
    const QVariantMap stored = _desktop.defaults.dictionary(_style.placeKey).value_or(QVariantMap());
    const auto number = [&stored](const char* name) { return stored.value(QLatin1String(name)).toInt(); };
    const QRect place(number("x"), number("y"), number("w"), number("h"));
    const QRect free = QGuiApplication::primaryScreen()->availableGeometry();
    if (isWithinReach(place)) {
        resize(place.size().expandedTo(_style.minimumSize));
        setFramePosition(place.topLeft());
    } else {
        resize(_style.size.boundedTo(free.size()));
        setPosition(free.center() - QRect({}, size()).center());
    }
}

void ProgramWindow::rememberPlace()
{
    const QPoint corner = framePosition();
    const QVariantMap place = {{QStringLiteral("x"), static_cast<double>(corner.x())},
                               {QStringLiteral("y"), static_cast<double>(corner.y())},
                               {QStringLiteral("w"), static_cast<double>(width())},
                               {QStringLiteral("h"), static_cast<double>(height())}};
    _desktop.defaults.setObject(_style.placeKey, place);
}
