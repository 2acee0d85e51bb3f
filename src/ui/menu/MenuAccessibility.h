#pragma once

/// Lets screen readers find the menus: the rows of the glass menu by what they are, and the open menu of
/// either style among the program's windows, where Qt lists no popups. To be called before the first menu is
/// made; again does no harm.
void makeMenusAccessible();
