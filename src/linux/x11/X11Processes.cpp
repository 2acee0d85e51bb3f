#include "linux/x11/X11Processes.h"

#include "platform/BundleId.h"

#include <QHash>

#include <algorithm>

std::optional<QString> X11Processes::bundleId(const QString& windowClass)
{
    static const QString chrome = QStringLiteral("com.google.Chrome");
    static const QString firefox = QStringLiteral("org.mozilla.firefox");
    static const QString edge = QStringLiteral("com.microsoft.edgemac");
    static const QString vivaldi = QStringLiteral("com.vivaldi.Vivaldi");
    static const QString opera = QStringLiteral("com.operasoftware.Opera");
    static const QHash<QString, QString> identifiers = {
        {QStringLiteral("google-chrome"), chrome},
        {QStringLiteral("google-chrome-beta"), chrome},
        {QStringLiteral("chromium"), chrome},
        {QStringLiteral("chromium-browser"), chrome},
        {QStringLiteral("google-chrome-unstable"), QStringLiteral("com.google.Chrome.canary")},
        {QStringLiteral("firefox"), firefox},
        {QStringLiteral("firefox-esr"), firefox},
        {QStringLiteral("firefox-aurora"), firefox},
        {QStringLiteral("firefox-nightly"), firefox},
        {QStringLiteral("org.mozilla.firefox"), firefox},
        {QStringLiteral("microsoft-edge"), edge},
        {QStringLiteral("microsoft-edge-beta"), edge},
        {QStringLiteral("microsoft-edge-dev"), edge},
        {QStringLiteral("brave-browser"), QStringLiteral("com.brave.Browser")},
        {QStringLiteral("brave-browser-beta"), QStringLiteral("com.brave.Browser.beta")},
        {QStringLiteral("brave-browser-nightly"), QStringLiteral("com.brave.Browser.nightly")},
        {QStringLiteral("vivaldi-stable"), vivaldi},
        {QStringLiteral("vivaldi-snapshot"), vivaldi},
        {QStringLiteral("opera"), opera},
        {QStringLiteral("opera beta"), opera},
        {QStringLiteral("opera developer"), opera},
        {QStringLiteral("spotify"), BundleId::spotify},
    };
    const auto found = identifiers.constFind(windowClass);
    return found != identifiers.cend() ? std::optional(*found) : std::nullopt;
}

std::vector<X11Processes::Process> X11Processes::running()
{
    const xcb_window_t active = X11Windows::active();
    std::vector<X11Windows::Description> windows = X11Windows::managed();
    std::stable_partition(windows.begin(), windows.end(),
                          [active](const auto& each) { return each.window == active; });
    std::vector<Process> processes;
    for (const X11Windows::Description& each : windows) {
        const bool isKnown = std::any_of(processes.begin(), processes.end(), [&each](const Process& process) {
            return process.unixId == each.processId && process.name == each.windowClass;
        });
        const bool isNameless = !each.processId && each.windowClass.isEmpty();
        if (!isKnown && !isNameless) {
            processes.push_back({each.processId, each.windowClass, bundleId(each.windowClass), each.window,
                                 each.window == active});
        }
    }
    return processes;
}
