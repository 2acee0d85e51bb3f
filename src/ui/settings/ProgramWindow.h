#pragma once

#include <QQuickView>

#include <functional>
#include <memory>

class Appearance;
class UserDefaults;

/// An ordinary window of the program. It opens where and as large as it last was, in the middle of the screen
/// at first. Ctrl+W closes it and so does Escape, where nothing in it has a use for that. A closed window is
/// deleted, with all that its view took.
class ProgramWindow : public QQuickView
{
    Q_OBJECT

public:
    /// What the window builds on. Everything outlives it.
    struct Desktop {
        UserDefaults& defaults;
        Appearance& appearance;
        std::function<void()> closed = {}; ///< called when a window is about to be gone
    };

    struct Style {
        QString title;
        QString placeKey;  ///< of the settings, for a dictionary of "x", "y", "w" and "h" in points
        QSize size;        ///< at first, in points
        QSize minimumSize; ///< in points
    };

    ProgramWindow(const Desktop& desktop, const Style& style);
    ~ProgramWindow() override;

    /// Called when the user or the view closes the window.
    std::function<void()> onClose;

    /// Loads the view of a QML file of this module, which has the model as its required property `model`. The
    /// model lives as long as the view.
    void setView(const QString& file, std::unique_ptr<QObject> model);

    /// Shows the window, or brings it to the front.
    void present();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void restorePlace();
    void rememberPlace();

    Desktop _desktop;
    Style _style;
    std::unique_ptr<QObject> _model;
};
