#pragma once

#include "MainProgram.h"
#include "PageMessages.h"
#include "PopupWindow.h"

#include <QPointer>
#include <QTimer>
#include <QWebChannel>
#include <QWebEngineProfile>
#include <QWebEngineView>
#include <QWidget>

/// The window with the sign-in page. It passes on what the page posts and what becomes of the page, and
/// leaves it to the main program what that means.
class SignInWindow : public QWidget
{
    Q_OBJECT

public:
    explicit SignInWindow(MainProgram& mainProgram);
    ~SignInWindow() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void handle(const QJsonObject& message);
    void load(const QUrl& url, const QString& developerToken);
    void present();
    void openPopup(QWebEngineNewWindowRequest& request);
    void failed(const QString& description);

    MainProgram& _mainProgram;
    QWebEngineProfile _profile{QStringLiteral("signin")};
    QWebEngineView _webView{this};
    QWebChannel _channel;
    PageMessages _messages;
    QTimer _timeout;
    QPointer<PopupWindow> _popup;
};
