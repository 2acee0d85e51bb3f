#pragma once

/// Makes the menus accessible: the rows of the glass menu with their roles and states, and the open menu of
/// either style as one of the program's windows, among which Qt lists no popups. To be called before the
/// first menu is made; further calls do nothing.
void makeMenusAccessible();
