#pragma once

#include "SignInPage.h"

#include <QWebEngineNewWindowRequest>
#include <QWebEngineView>

/// Apple's own sign-in, in a window above the others.
class PopupWindow : public QWebEngineView
{
    Q_OBJECT

public:
    PopupWindow(QWebEngineProfile& profile, QWebEngineNewWindowRequest& request, QPoint center);

Q_SIGNALS:
    /// The page has closed itself.
    void closedByPage();
};
