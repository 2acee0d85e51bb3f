#pragma once

#include "base/SerialQueue.h"
#include "platform/UserDefaults.h"

#include <mutex>

/// Settings in a property-list file of the user's own. The file is read once; a change is written whole, for
/// the eyes of the user alone, and on a queue, so that nobody waits for a slow disk: changes that come while
/// a write is under way are written together after it, and the destructor waits for the last one. What
/// another program writes meanwhile is not seen.
///
/// A file that cannot be read or understood is renamed to NAME.damaged-1, -2 and so on and the program starts
/// from nothing. Where even that fails the file is left as it is, and changes live in memory only. A write
/// that fails is logged, and made good by the next change.
class PlistUserDefaults final : public UserDefaults
{
public:
    /// Neither the file nor its folder has to exist before the first change.
    explicit PlistUserDefaults(QString path);

    /// "com.orvalen.pellar.plist" in the program's folder below $XDG_CONFIG_HOME.
    static QString defaultPath();

    QVariant object(const QString& key) const override { return _values.value(key); }

    /// Numbers that are not finite, characters that XML has no form for and nesting deeper than 64 are
    /// refused, too. Dates are kept to the second, and to the years 1 to 9999.
    void setObject(const QString& key, const QVariant& value) override;
    void removeObject(const QString& key) override;

private:
    void load();
    void setAside(const QString& fault);
    void save();
    void writeLatest();

    QString _path;
    QVariantMap _values;
    bool _isWritable = true;

    std::mutex _latestLock;
    std::optional<QVariantMap> _latest; ///< what is to be written next

    // Of the queue, once it has work.
    QByteArray _stored;      ///< what the file holds, in our own spelling; empty while there is none
    bool _isFailing = false; ///< the last write failed and has been logged

    SerialQueue _queue{
        QStringLiteral("com.orvalen.pellar.defaults")}; // waits for its work before the rest goes
};
