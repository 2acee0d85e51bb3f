#include "PillWatch.h"

#include "ui/pill/PillLayout.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

namespace {

constexpr QSize pillSize(185, 28);
constexpr int initialRightInset = 240;

QImage grab(const QRect& area)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, area.x(), area.y(), area.width(), area.height())
        .toImage();
}

} // namespace

PillWatch::PillWatch()
    : _pill(
          QPoint(QGuiApplication::primaryScreen()->size().width() - initialRightInset - pillSize.width(), 0),
          pillSize)
{
}

bool PillWatch::isDrawn() const
{
    constexpr int paper = 200; // lightness; the desktop behind it is dark
    return grab({_pill.topLeft() + QPoint(60, 3), QSize(1, 1)}).pixelColor(0, 0).lightness() > paper;
}

QImage PillWatch::title() const
{
    return grab(PillLayout::make(pillSize, {}).title.toAlignedRect().translated(_pill.topLeft()));
}

double PillWatch::millisecondsUntil(const std::function<bool()>& condition)
{
    constexpr qint64 limit = 10'000;
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > limit) {
            return -1;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}
