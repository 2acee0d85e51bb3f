#include "ui/menu/MenuFont.h"

#include <QFontInfo>
#include <QGuiApplication>

QFont menuFont()
{
    QFont font = QGuiApplication::font();
    font.setFamily(QFontInfo(font).family());
    return font;
}
