#pragma once

/// Makes the QML modules of the views known to every engine of the program; to be called before the first of
/// them.
void importQmlModules();
