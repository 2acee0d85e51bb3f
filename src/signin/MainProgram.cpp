#include "MainProgram.h"

#include <QJsonDocument>

#include <cerrno>
#include <cstdio>
#include <unistd.h>

MainProgram::MainProgram() : _input(STDIN_FILENO, QSocketNotifier::Read)
{
    connect(&_input, &QSocketNotifier::activated, this, &MainProgram::read);
}

void MainProgram::tell(const QString& event, const QJsonObject& more)
{
    QJsonObject message = more;
    message.insert(QStringLiteral("event"), event);
    const QByteArray line = QJsonDocument(message).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fflush(stdout);
}

void MainProgram::read()
{
    QByteArray piece(4096, Qt::Uninitialized);
    const ssize_t count = ::read(STDIN_FILENO, piece.data(), static_cast<size_t>(piece.size()));
    if (count < 0 && errno == EINTR) {
        return;
    }
    if (count <= 0) {
        _input.setEnabled(false);
        Q_EMIT ended();
        return;
    }
    _received += piece.first(count);
    for (qsizetype end = _received.indexOf('\n'); end >= 0; end = _received.indexOf('\n')) {
        const QByteArray line = _received.first(end);
        _received.remove(0, end + 1);
        Q_EMIT received(QJsonDocument::fromJson(line).object());
    }
}
