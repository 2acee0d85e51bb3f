#pragma once

#include "base/SerialQueue.h"
#include "prefs/PellarTheme.h"
#include "prefs/Preference.h"

#include <QImage>
#include <QObject>

/// Which colour theme the pill has, and the tint that comes of it: the theme's own, none, or one drawn from
/// the artwork on show.
class ThemeManager : public QObject
{
    Q_OBJECT

public:
    explicit ThemeManager(UserDefaults& defaults);
    static ThemeManager& shared();

    Preference<PellarTheme> mode;

    /// Opaque; none for the neutral look. A tint of artwork follows that as soon as it has been worked out.
    std::optional<QColor> tint() const { return _tint; }

    /// Takes the artwork on show; a null image for none.
    void updateArtwork(const QImage& artwork);

private:
    void recomputeTint();
    void extractTint();

    QImage _artwork; ///< kept in every mode, for the change back to album art
    QProperty<std::optional<QColor>> _tint;
    QPropertyNotifier _modeWatch;
    SerialQueue _extractionQueue{QStringLiteral("com.orvalen.pellar.theme.extract")};
};
