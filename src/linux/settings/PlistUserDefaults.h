#pragma once

#include "platform/UserDefaults.h"

/// Settings in a property-list file of the user's own. The file is read once; every change is written at once
/// and whole, for the eyes of the user alone. What another program writes meanwhile is not seen.
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

    /// Numbers that are not finite, dates beyond 1932 to 2069, characters that XML has no form for and
    /// nesting deeper than 64 are refused too. Dates are kept to the second.
    void setObject(const QString& key, const QVariant& value) override;
    void removeObject(const QString& key) override;

private:
    void load();
    void setAside(const QString& fault);
    void save();

    QString _path;
    QVariantMap _values;
    QByteArray _stored; ///< what the file holds, in our own spelling; empty while there is none
    bool _isWritable = true;
    bool _isFailing = false; ///< the last write failed and has been logged
};
