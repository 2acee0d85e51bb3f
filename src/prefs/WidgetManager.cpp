#include "prefs/WidgetManager.h"

#include "prefs/Preference.h"

namespace {

const QString isEnabledKey = QStringLiteral("pellar.widget.enabled");
const QString showArtworkKey = QStringLiteral("pellar.widget.showArtwork");
const QString showTitleKey = QStringLiteral("pellar.widget.showTitle");
const QString showArtistKey = QStringLiteral("pellar.widget.showArtist");
const QString showProgressKey = QStringLiteral("pellar.widget.showProgress");
const QString showTransportKey = QStringLiteral("pellar.widget.showTransport");
const QString showLyricKey = QStringLiteral("pellar.widget.showLyric");
const QString alwaysOnTopKey = QStringLiteral("pellar.widget.alwaysOnTop");
const QString frameKey = QStringLiteral("pellar.widget.frame");

/// A coordinate; whole numbers may have been stored as integers by another hand.
std::optional<double> coordinate(const QVariantMap& frame, const QString& key)
{
    const QVariant value = frame.value(key);
    const bool isNumber = value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong;
    return isNumber ? std::optional(value.toDouble()) : std::nullopt;
}

} // namespace

WidgetManager::WidgetManager(UserDefaults& defaults) : _defaults(defaults)
{
    loadFlag(defaults, isEnabledKey, _isEnabled);
    loadFlag(defaults, showArtworkKey, _showArtwork);
    loadFlag(defaults, showTitleKey, _showTitle);
    loadFlag(defaults, showArtistKey, _showArtist);
    loadFlag(defaults, showProgressKey, _showProgress);
    loadFlag(defaults, showTransportKey, _showTransport);
    loadFlag(defaults, showLyricKey, _showLyric);
    loadFlag(defaults, alwaysOnTopKey, _alwaysOnTop);
}

WidgetManager& WidgetManager::shared()
{
    static auto* const instance = new WidgetManager(UserDefaults::standard());
    return *instance;
}

void WidgetManager::setIsEnabled(bool enable)
{
    assignFlag(_defaults, isEnabledKey, _isEnabled, enable);
}

void WidgetManager::setShowArtwork(bool show)
{
    assignFlag(_defaults, showArtworkKey, _showArtwork, show);
}

void WidgetManager::setShowTitle(bool show)
{
    assignFlag(_defaults, showTitleKey, _showTitle, show);
}

void WidgetManager::setShowArtist(bool show)
{
    assignFlag(_defaults, showArtistKey, _showArtist, show);
}

void WidgetManager::setShowProgress(bool show)
{
    assignFlag(_defaults, showProgressKey, _showProgress, show);
}

void WidgetManager::setShowTransport(bool show)
{
    assignFlag(_defaults, showTransportKey, _showTransport, show);
}

void WidgetManager::setShowLyric(bool show)
{
    assignFlag(_defaults, showLyricKey, _showLyric, show);
}

void WidgetManager::setAlwaysOnTop(bool onTop)
{
    assignFlag(_defaults, alwaysOnTopKey, _alwaysOnTop, onTop);
}

std::optional<QRectF> WidgetManager::frame() const
{
    const QVariantMap stored = _defaults.dictionary(frameKey).value_or(QVariantMap());
    const auto x = coordinate(stored, QStringLiteral("x"));
    const auto y = coordinate(stored, QStringLiteral("y"));
    const auto width = coordinate(stored, QStringLiteral("w"));
    const auto height = coordinate(stored, QStringLiteral("h"));
    return x && y && width && height ? std::optional(QRectF(*x, *y, *width, *height)) : std::nullopt;
}

void WidgetManager::setFrame(const QRectF& frame)
{
    _defaults.setObject(frameKey, QVariantMap{{QStringLiteral("x"), frame.x()},
                                              {QStringLiteral("y"), frame.y()},
                                              {QStringLiteral("w"), frame.width()},
                                              {QStringLiteral("h"), frame.height()}});
}

void WidgetManager::resetPosition()
{
    _defaults.removeObject(frameKey);
}
