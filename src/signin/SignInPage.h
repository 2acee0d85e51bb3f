#pragma once

#include <QWebEnginePage>

/// The page in the sign-in window: it stays at its address, and its console does not reach standard error.
class SignInPage : public QWebEnginePage
{
    Q_OBJECT

public:
    using QWebEnginePage::QWebEnginePage;

    void setAddress(const QUrl& address) { _address = address; }

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message, int line,
                                  const QString& source) override;

private:
    QUrl _address;
};
