#include "platform/UserDefaults.h"
#include "prefs/PillVisibilityManager.h"
#include "ui/pill/PillLayout.h"

#include <QMap>

#include <cstdio>

namespace {

/// The settings of a fresh installation.
class NoDefaults final : public UserDefaults
{
public:
    QVariant object(const QString& /*key*/) const override { return {}; }
    void setObject(const QString& /*key*/, const QVariant& /*value*/) override {}
    void removeObject(const QString& /*key*/) override {}
};

constexpr double pillHeight = 28;

} // namespace

/// Prints where a part of the pill is, for scripts that click on it: "x y" from the window's top-left corner.
int main(int argc, char** argv)
{
    NoDefaults defaults;
    const double width = PillVisibilityManager(defaults).preferredPillWidth();
    const PillLayout layout = PillLayout::make({width, pillHeight}, {});
    const QMap<QString, QRectF> zones = {
        {QStringLiteral("prev"), layout.previousButton}, {QStringLiteral("play"), layout.playButton},
        {QStringLiteral("next"), layout.nextButton},     {QStringLiteral("title"), layout.title},
        {QStringLiteral("progress"), layout.progress},
    };
    const QString zone = argc == 2 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (!zones.contains(zone)) {
        std::fputs("usage: pill-point prev|play|next|title|progress\n", stderr);
        return 2;
    }
    const QPoint centre = zones[zone].center().toPoint();
    std::printf("%d %d\n", centre.x(), centre.y());
    return 0;
}
