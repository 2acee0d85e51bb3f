#include "accounts/AccountsLog.h"

#include "base/DebugLog.h"

#include <QLoggingCategory>
#include <QRegularExpression>

namespace {

Q_LOGGING_CATEGORY(accountsLog, "com.orvalen.pellar.accounts", QtWarningMsg)

} // namespace

void systemLog(const QString& message)
{
    const QString line = QStringLiteral("[Pellar] ") + message;
    qCWarning(accountsLog).noquote() << line;
    dlog(line);
}

QString withoutSecrets(const QString& text)
{
    // Words of code and of prose are shorter than 32 characters; tokens are not.
    static const QRegularExpression pattern(
        QStringLiteral(R"((\w+://[^\s?#"'<>]*)([?#][^\s"'<>)]*)?|[\w.+/=~%-]{32,})"));
    QString result;
    qsizetype end = 0;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        result += QStringView(text).sliced(end, match.capturedStart() - end);
        result += match.hasCaptured(1) ? match.captured(1) : QStringLiteral("…");
        end = match.capturedEnd();
    }
    return result + QStringView(text).sliced(end);
}
