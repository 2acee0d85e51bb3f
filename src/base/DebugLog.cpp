#include "base/DebugLog.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The temporary folder belongs to everybody, so the name may be anybody's link, pipe or file by now.
bool isOurPlainFile(int descriptor)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_uid == geteuid() &&
           status.st_nlink == 1;
}

void append(const QString& path, const QByteArray& line)
{
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    const int descriptor = open(QFile::encodeName(path).constData(), flags, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        return;
    }
    if (isOurPlainFile(descriptor)) {
        [[maybe_unused]] const int narrowed = fchmod(descriptor, S_IRUSR | S_IWUSR);
        [[maybe_unused]] const ssize_t written =
            ::write(descriptor, line.constData(), static_cast<size_t>(line.size()));
    }
    close(descriptor);
}

/// Whether a tool that reads the log may take it for the end of a line: a control character, or a separator
/// of lines or paragraphs.
bool breaksLine(QChar c)
{
    return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line ||
           c.category() == QChar::Separator_Paragraph;
}

} // namespace

DebugLog::DebugLog(QString path) : _path(std::move(path)) {}

DebugLog& DebugLog::shared()
{
    static DebugLog log(QStringLiteral("/tmp/pellar_debug.log"));
    return log;
}

void DebugLog::write(const QString& message)
{
    _queue.async([this, time = QDateTime::currentDateTimeUtc(), message] {
        append(_path, line(time, message).toUtf8());
    });
}

void DebugLog::setPath(const QString& path)
{
    _queue.async([this, path] { _path = path; });
}

void DebugLog::flush()
{
    _queue.drain();
}

QString DebugLog::line(const QDateTime& time, const QString& message)
{
    QString text = message;
    for (QChar& c : text) {
        c = breaksLine(c) ? QLatin1Char(' ') : c;
    }
    return QStringLiteral("[%1 +0000] %2\n")
        .arg(time.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")), text);
}

void dlog(const QString& message)
{
    DebugLog::shared().write(message);
}
