#pragma once

#include <QFont>

/// The program's font by its own name. A name like "Sans Serif" stands for another font in each script, and
/// the digits of a title would be set in that of the letters beside them.
QFont menuFont();
