#include "platform/linux/ClipboardPasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

void ClipboardPasteboard::setText(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}
