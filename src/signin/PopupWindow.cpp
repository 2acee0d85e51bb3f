#include "PopupWindow.h"

PopupWindow::PopupWindow(QWebEngineProfile& profile, QWebEngineNewWindowRequest& request, QPoint center)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowFlags(Qt::Window | Qt::WindowStaysOnTopHint);
    setWindowTitle(tr("Apple Music Sign In"));
    QRect frame(0, 0, 540, 660);
    frame.moveCenter(center);
    setGeometry(frame);
    auto* const page = new SignInPage(&profile, this);
    setPage(page);
    connect(page, &QWebEnginePage::windowCloseRequested, this, [this] {
        Q_EMIT closedByPage();
        close();
    });
    request.openIn(page);
    show();
}
