#include "linux/desktop/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

void ClipboardPasteboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
