#include "SignInWindow.h"

#include "SignInPage.h"

#include <QCloseEvent>
#include <QFile>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QScreen>
#include <QVBoxLayout>
#include <QWebEngineLoadingInfo>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>

namespace {

constexpr int loadLimit = 60'000; // milliseconds

QString resource(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// A text as a literal of JavaScript.
QString literal(const QString& text)
{
    const QByteArray list = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

QWebEngineScript startScript(const QString& developerToken)
{
    QWebEngineScript script;
    script.setName(QStringLiteral("pellar"));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(false);
    script.setSourceCode(resource(QStringLiteral(":/qtwebchannel/qwebchannel.js")) +
                         resource(QStringLiteral(":/message-handlers.js")) +
                         QStringLiteral("window.PellarDeveloperToken = ") + literal(developerToken) +
                         resource(QStringLiteral(":/console-bridge.js")));
    return script;
}

} // namespace

SignInWindow::SignInWindow(MainProgram& mainProgram) : _mainProgram(mainProgram)
{
    setWindowTitle(tr("Connect Apple Music"));
    setFixedSize(460, 360);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(&_webView);
    auto* const page = new SignInPage(&_profile, &_webView);
    page->setBackgroundColor(Qt::transparent);
    page->settings()->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, true);
    page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    _channel.registerObject(QStringLiteral("native"), &_messages);
    page->setWebChannel(&_channel);
    _webView.setPage(page);
    _webView.setContextMenuPolicy(Qt::NoContextMenu);
    _timeout.setSingleShot(true);

    connect(&_mainProgram, &MainProgram::received, this, &SignInWindow::handle);
    connect(&_messages, &PageMessages::posted, this, [this](const QString& handler, const QString& body) {
        _mainProgram.tell(handler,
                          {{QStringLiteral("body"), QJsonDocument::fromJson(body.toUtf8()).object()}});
    });
    connect(&_timeout, &QTimer::timeout, this, [this] { failed(QStringLiteral("The request timed out.")); });
    connect(page, &QWebEnginePage::newWindowRequested, this, &SignInWindow::openPopup);
    connect(page, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo& info) {
        if (info.status() != QWebEngineLoadingInfo::LoadStartedStatus) {
            _timeout.stop();
        }
        if (info.status() == QWebEngineLoadingInfo::LoadFailedStatus) {
            failed(info.errorString());
        }
    });
    connect(page, &QWebEnginePage::renderProcessTerminated, this,
            [this] { failed(QStringLiteral("The page has crashed.")); });
    present();
}

SignInWindow::~SignInWindow()
{
    delete _popup.data();
    delete _webView.page(); // before its profile
}

void SignInWindow::handle(const QJsonObject& message)
{
    const QUrl url(message.value(QStringLiteral("load")).toString());
    if (!url.isEmpty()) {
        load(url, message.value(QStringLiteral("developerToken")).toString());
    } else if (message.contains(QStringLiteral("present"))) {
        present();
    }
}

void SignInWindow::load(const QUrl& url, const QString& developerToken)
{
    auto* const page = qobject_cast<SignInPage*>(_webView.page());
    page->scripts().clear();
    page->scripts().insert(startScript(developerToken));
    page->settings()->setAttribute(QWebEngineSettings::LocalContentCanAccessRemoteUrls, url.isLocalFile());
    page->setAddress(url);
    _timeout.start(loadLimit);
    page->load(url);
}

void SignInWindow::present()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    move(screen.center() - frameGeometry().center() + frameGeometry().topLeft());
    show();
    raise();
    activateWindow();
}

void SignInWindow::openPopup(QWebEngineNewWindowRequest& request)
{
    _mainProgram.tell(QStringLiteral("popup"), {{QStringLiteral("text"), request.requestedUrl().toString()}});
    delete _popup.data();
    _popup = new PopupWindow(_profile, request, geometry().center());
    connect(_popup, &PopupWindow::closedByPage, this,
            [this] { _mainProgram.tell(QStringLiteral("popupClosed")); });
}

void SignInWindow::failed(const QString& description)
{
    _mainProgram.tell(QStringLiteral("loadFailed"), {{QStringLiteral("text"), description}});
}

void SignInWindow::closeEvent(QCloseEvent* event)
{
    delete _popup.data();
    _mainProgram.tell(QStringLiteral("closed"));
    event->accept();
}
