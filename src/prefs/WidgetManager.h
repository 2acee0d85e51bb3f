#pragma once

#include <QObject>
#include <QProperty>
#include <QRectF>

#include <optional>

class UserDefaults;

/// Whether the floating widget exists, what it shows and where it was left.
class WidgetManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(
        bool isEnabled READ isEnabled WRITE setIsEnabled NOTIFY isEnabledChanged BINDABLE bindableIsEnabled)
    Q_PROPERTY(bool showArtwork READ showArtwork WRITE setShowArtwork NOTIFY showArtworkChanged BINDABLE
                   bindableShowArtwork)
    Q_PROPERTY(
        bool showTitle READ showTitle WRITE setShowTitle NOTIFY showTitleChanged BINDABLE bindableShowTitle)
    Q_PROPERTY(bool showArtist READ showArtist WRITE setShowArtist NOTIFY showArtistChanged BINDABLE
                   bindableShowArtist)
    Q_PROPERTY(bool showProgress READ showProgress WRITE setShowProgress NOTIFY showProgressChanged BINDABLE
                   bindableShowProgress)
    Q_PROPERTY(bool showTransport READ showTransport WRITE setShowTransport NOTIFY showTransportChanged
                   BINDABLE bindableShowTransport)
    Q_PROPERTY(
        bool showLyric READ showLyric WRITE setShowLyric NOTIFY showLyricChanged BINDABLE bindableShowLyric)
    Q_PROPERTY(bool alwaysOnTop READ alwaysOnTop WRITE setAlwaysOnTop NOTIFY alwaysOnTopChanged BINDABLE
                   bindableAlwaysOnTop)

public:
    explicit WidgetManager(UserDefaults& defaults);
    static WidgetManager& shared();

    bool isEnabled() const { return _isEnabled; }
    void setIsEnabled(bool enable);
    QBindable<bool> bindableIsEnabled() const { return &_isEnabled; }

    bool showArtwork() const { return _showArtwork; }
    void setShowArtwork(bool show);
    QBindable<bool> bindableShowArtwork() const { return &_showArtwork; }

    bool showTitle() const { return _showTitle; }
    void setShowTitle(bool show);
    QBindable<bool> bindableShowTitle() const { return &_showTitle; }

    bool showArtist() const { return _showArtist; }
    void setShowArtist(bool show);
    QBindable<bool> bindableShowArtist() const { return &_showArtist; }

    bool showProgress() const { return _showProgress; }
    void setShowProgress(bool show);
    QBindable<bool> bindableShowProgress() const { return &_showProgress; }

    bool showTransport() const { return _showTransport; }
    void setShowTransport(bool show);
    QBindable<bool> bindableShowTransport() const { return &_showTransport; }

    bool showLyric() const { return _showLyric; }
    void setShowLyric(bool show);
    QBindable<bool> bindableShowLyric() const { return &_showLyric; }

    bool alwaysOnTop() const { return _alwaysOnTop; }
    void setAlwaysOnTop(bool onTop);
    QBindable<bool> bindableAlwaysOnTop() const { return &_alwaysOnTop; }

    /// Where the user left the widget, in points on the screen. None where no whole frame is stored.
    std::optional<QRectF> frame() const;
    void setFrame(const QRectF& frame);

    /// Forgets the frame: the next widget opens where a first one does.
    void resetPosition();

Q_SIGNALS:
    void isEnabledChanged();
    void showArtworkChanged();
    void showTitleChanged();
    void showArtistChanged();
    void showProgressChanged();
    void showTransportChanged();
    void showLyricChanged();
    void alwaysOnTopChanged();

private:
    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _isEnabled, false,
                                         &WidgetManager::isEnabledChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _showArtwork, true,
                                         &WidgetManager::showArtworkChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _showTitle, true,
                                         &WidgetManager::showTitleChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _showArtist, true,
                                         &WidgetManager::showArtistChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _showProgress, true,
                                         &WidgetManager::showProgressChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _showTransport, true,
                                         &WidgetManager::showTransportChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _showLyric, false,
                                         &WidgetManager::showLyricChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(WidgetManager, bool, _alwaysOnTop, true,
                                         &WidgetManager::alwaysOnTopChanged)
};
