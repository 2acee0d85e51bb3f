#pragma once

#include "ui/PillColors.h"
#include "ui/PillLayout.h"

#include <QObject>
#include <QProperty>
#include <QQmlEngine>
#include <QRectF>

class Appearance;
class NowPlayingService;
class PillVisibilityManager;

/// What the pill shows and what a click on it does.
class PillModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    Q_PROPERTY(QString title READ title NOTIFY contentChanged)
    Q_PROPERTY(bool isIdle READ isIdle NOTIFY contentChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY contentChanged)
    Q_PROPERTY(QString playLabel READ playLabel NOTIFY contentChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString hoveredZone READ hoveredZone NOTIFY hoveredZoneChanged)
    Q_PROPERTY(PillColors colors READ colors NOTIFY colorsChanged)
    Q_PROPERTY(QRectF previousButton READ previousButton NOTIFY layoutChanged)
    Q_PROPERTY(QRectF playButton READ playButton NOTIFY layoutChanged)
    Q_PROPERTY(QRectF nextButton READ nextButton NOTIFY layoutChanged)
    Q_PROPERTY(QRectF titleFrame READ titleFrame NOTIFY layoutChanged)
    Q_PROPERTY(QRectF progressFrame READ progressFrame NOTIFY layoutChanged)
    Q_PROPERTY(double cornerRadius READ cornerRadius NOTIFY layoutChanged)

public:
    /// Everything given outlives the model. `height` is the status bar's thickness, in points.
    PillModel(NowPlayingService& service, PillVisibilityManager& visibility, Appearance& appearance,
              double height);

    QString title() const;
    /// Whether nothing plays and nothing is paused, either.
    bool isIdle() const;
    QString playSymbol() const;
    QString playLabel() const;
    /// How much of the track has been played: 0 to 1, in steps of a point of the progress line.
    double progress() const { return _progress; }
    /// The control under the pointer: "prev", "play", "next" or empty.
    QString hoveredZone() const { return _hoveredZone; }
    PillColors colors() const;

    const PillLayout& layout() const { return _layout; }
    QRectF previousButton() const { return _layout.previousButton; }
    QRectF playButton() const { return _layout.playButton; }
    QRectF nextButton() const { return _layout.nextButton; }
    QRectF titleFrame() const { return _layout.title; }
    QRectF progressFrame() const { return _layout.progress; }
    double cornerRadius() const { return _layout.cornerRadius; }

    Q_INVOKABLE void hover(QPointF point);
    Q_INVOKABLE void leave();

    /// A click with the left button: does what the control under the pointer is for.
    Q_INVOKABLE void tap(QPointF point);

Q_SIGNALS:
    void contentChanged();
    void progressChanged();
    void hoveredZoneChanged();
    void colorsChanged();
    void layoutChanged();

private:
    void updateLayout();
    void updateProgress();

    NowPlayingService& _service;
    PillVisibilityManager& _visibility;
    Appearance& _appearance;
    double _height;
    PillLayout _layout;
    Q_OBJECT_BINDABLE_PROPERTY_WITH_ARGS(PillModel, double, _progress, 0, &PillModel::progressChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PillModel, QString, _hoveredZone, &PillModel::hoveredZoneChanged)
};
