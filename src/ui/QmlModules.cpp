#include "ui/QmlModules.h"

#include <QtQml/QQmlExtensionPlugin>

// The linker drops a static library's plugin that nothing names. These are named in the file of a function
// that every program with views calls.
Q_IMPORT_QML_PLUGIN(Pellar_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_PanelPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_PillPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_MenuPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_LyricsPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_PreviewPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_TrackPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_WidgetPlugin)
Q_IMPORT_QML_PLUGIN(Pellar_SettingsPlugin)

void importQmlModules() {}
