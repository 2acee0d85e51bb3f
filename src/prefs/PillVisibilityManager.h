#pragma once

#include <QObject>
#include <QProperty>

class UserDefaults;

/// What the menu-bar pill shows.
class PillVisibilityManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool showAlbumArt READ showAlbumArt WRITE setShowAlbumArt NOTIFY showAlbumArtChanged BINDABLE
                   bindableShowAlbumArt)
    Q_PROPERTY(bool showVisualizer READ showVisualizer WRITE setShowVisualizer NOTIFY showVisualizerChanged
                   BINDABLE bindableShowVisualizer)
    Q_PROPERTY(
        bool showTitle READ showTitle WRITE setShowTitle NOTIFY showTitleChanged BINDABLE bindableShowTitle)
    Q_PROPERTY(bool showPrevButton READ showPrevButton WRITE setShowPrevButton NOTIFY showPrevButtonChanged
                   BINDABLE bindableShowPrevButton)
    Q_PROPERTY(bool showNextButton READ showNextButton WRITE setShowNextButton NOTIFY showNextButtonChanged
                   BINDABLE bindableShowNextButton)
    Q_PROPERTY(double preferredPillWidth READ preferredPillWidth NOTIFY preferredPillWidthChanged BINDABLE
                   bindablePreferredPillWidth)

public:
    explicit PillVisibilityManager(UserDefaults& defaults);
    static PillVisibilityManager& shared();

    bool showAlbumArt() const { return _showAlbumArt; }
    void setShowAlbumArt(bool show);
    QBindable<bool> bindableShowAlbumArt() const { return &_showAlbumArt; }

    bool showVisualizer() const { return _showVisualizer; }
    void setShowVisualizer(bool show);
    QBindable<bool> bindableShowVisualizer() const { return &_showVisualizer; }

    bool showTitle() const { return _showTitle; }
    void setShowTitle(bool show);
    QBindable<bool> bindableShowTitle() const { return &_showTitle; }

    bool showPrevButton() const { return _showPrevButton; }
    void setShowPrevButton(bool show);
    QBindable<bool> bindableShowPrevButton() const { return &_showPrevButton; }

    bool showNextButton() const { return _showNextButton; }
    void setShowNextButton(bool show);
    QBindable<bool> bindableShowNextButton() const { return &_showNextButton; }

    /// Width of the pill with what it shows, in points.
    double preferredPillWidth() const { return _preferredPillWidth; }
    QBindable<double> bindablePreferredPillWidth() const { return &_preferredPillWidth; }

Q_SIGNALS:
    void showAlbumArtChanged();
    void showVisualizerChanged();
    void showTitleChanged();
    void showPrevButtonChanged();
    void showNextButtonChanged();
    void preferredPillWidthChanged();

private:
    UserDefaults& _defaults;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillVisibilityManager, bool, _showAlbumArt, true,
                                         &PillVisibilityManager::showAlbumArtChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillVisibilityManager, bool, _showVisualizer, true,
                                         &PillVisibilityManager::showVisualizerChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillVisibilityManager, bool, _showTitle, true,
                                         &PillVisibilityManager::showTitleChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillVisibilityManager, bool, _showPrevButton, true,
                                         &PillVisibilityManager::showPrevButtonChanged)
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillVisibilityManager, bool, _showNextButton, true,
                                         &PillVisibilityManager::showNextButtonChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillVisibilityManager, double, _preferredPillWidth,
                               &PillVisibilityManager::preferredPillWidthChanged)
};
