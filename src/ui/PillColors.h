#pragma once

#include <QColor>
#include <QObject>

/// The pill's neutral colours on a light or a dark desktop.
struct PillColors {
    Q_GADGET
    Q_PROPERTY(QColor background MEMBER background CONSTANT)
    Q_PROPERTY(QColor border MEMBER border CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor dimmedText MEMBER dimmedText CONSTANT)
    Q_PROPERTY(QColor highlight MEMBER highlight CONSTANT)
    Q_PROPERTY(QColor track MEMBER track CONSTANT)
    Q_PROPERTY(QColor fill MEMBER fill CONSTANT)

public:
    QColor background;
    QColor border;
    QColor text;
    QColor dimmedText; ///< for what is there but has nothing to say
    QColor highlight;  ///< behind the button under the pointer
    QColor track;      ///< the part of the progress line still to come
    QColor fill;       ///< the part that has been played

    static PillColors forDesktop(bool isDark);
};
