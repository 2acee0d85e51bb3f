#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>

#include <optional>

/// The colours of what stands on a frosted cover.
struct CardColors {
    Q_GADGET
    QML_VALUE_TYPE(cardColors)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor quietText MEMBER quietText CONSTANT)
    Q_PROPERTY(QColor plate MEMBER plate CONSTANT)
    Q_PROPERTY(QColor highlight MEMBER highlight CONSTANT)
    Q_PROPERTY(QColor pressed MEMBER pressed CONSTANT)
    Q_PROPERTY(QColor track MEMBER track CONSTANT)
    Q_PROPERTY(QColor fill MEMBER fill CONSTANT)
    Q_PROPERTY(QColor focus MEMBER focus CONSTANT)
    Q_PROPERTY(QColor sheen MEMBER sheen CONSTANT)
    Q_PROPERTY(QColor outline MEMBER outline CONSTANT)

public:
    QColor text;
    QColor dimmedText; ///< of less weight; still to be read easily
    QColor quietText;  ///< of still less, beside text that is lit; as faint as can be read
    QColor plate;      ///< where a cover would be
    QColor highlight;  ///< behind the button under the pointer
    QColor pressed;    ///< behind a button that is held down
    QColor track;      ///< the part of the scrub bar still to come
    QColor fill;       ///< the part that has been played
    QColor focus;      ///< around what the keyboard goes to
    QColor sheen;      ///< the line of light within the card's edge
    QColor outline;    ///< around a cover that could not be told from the card

    friend bool operator==(const CardColors&, const CardColors&) = default;

    /// White on dark, black on light. `ground` is the middle colour of what all this stands on. With a tint
    /// the fill is of that colour, or of the nearest one that can be told from the ground.
    static CardColors on(const QColor& ground, bool isDark, const std::optional<QColor>& tint);
};
