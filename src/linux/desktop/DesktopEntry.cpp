#include "linux/desktop/DesktopEntry.h"

#include <QStringList>

namespace {

/// The escapes that any value may have.
QString unescaped(const QString& value)
{
    QString text;
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        switch (value[++i].unicode()) {
        case u's':
            text += u' ';
            break;
        case u'n':
            text += u'\n';
            break;
        case u't':
            text += u'\t';
            break;
        default:
            text += value[i];
        }
    }
    return text;
}

} // namespace

std::optional<QString> DesktopEntry::value(const QString& entry, const QString& key)
{
    bool isInMainGroup = false;
    const QStringList lines = entry.split(u'\n');
    for (const QString& each : lines) {
        const QString line = each.trimmed();
        if (line.startsWith(u'[')) {
            isInMainGroup = line == QStringLiteral("[Desktop Entry]");
        } else if (isInMainGroup && line.section(u'=', 0, 0).trimmed() == key && line.contains(u'=')) {
            return unescaped(line.section(u'=', 1).trimmed());
        }
    }
    return std::nullopt;
}

QString DesktopEntry::command(const QString& program)
{
    QString word;
    for (const QChar c : program) {
        if (QStringView(u"\"`$\\").contains(c)) {
            word += u'\\'; // within the quotes of the command line
        }
        word += c;
        if (c == u'%') {
            word += c; // or it would stand for an argument
        }
    }
    word.replace(u'\\', QStringLiteral("\\\\")); // as in any value
    return u'"' + word + u'"';
}

std::optional<QString> DesktopEntry::program(const QString& command)
{
    QString word;
    bool isQuoted = false;
    for (qsizetype i = 0; i < command.size(); ++i) {
        if (command[i] == u'"') {
            isQuoted = !isQuoted;
        } else if (command[i] == u' ' && !isQuoted) {
            break;
        } else {
            i += command[i] == u'\\' && isQuoted && i + 1 < command.size() ? 1 : 0;
            word += command[i];
        }
    }
    return isQuoted || word.isEmpty()
               ? std::nullopt
               : std::optional(word.replace(QStringLiteral("%%"), QStringLiteral("%")));
}
