#include "SignInPage.h"

/// The developer token is in every document of the main frame, so that there is to be one document only.
bool SignInPage::acceptNavigationRequest(const QUrl& url, NavigationType /*type*/, bool isMainFrame)
{
    return !isMainFrame || _address.isEmpty() || url.adjusted(QUrl::RemoveFragment) == _address;
}

void SignInPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/, const QString& /*message*/,
                                          int /*line*/, const QString& /*source*/)
{
}
