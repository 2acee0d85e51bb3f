#include "prefs/StoredForm.h"

#include "prefs/StoredList.h"

#include <QLoggingCategory>

namespace {

Q_LOGGING_CATEGORY(prefsLog, "com.orvalen.pellar.prefs")

} // namespace

void logUnreadable(const QString& key)
{
    qCWarning(prefsLog).noquote() << "the setting" << key << "cannot be read; its default applies";
}

void logDropped(qsizetype entries)
{
    qCWarning(prefsLog) << entries << "entries of a stored list cannot be read; they are left out";
}
