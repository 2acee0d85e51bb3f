#pragma once

#include <QByteArray>
#include <QString>

/// How a request ended: with a whole answer of the server, whatever its status, or with a failure.
struct HttpReply {
    int status = 0;  ///< HTTP status; 0 after a failure
    QByteArray body; ///< empty after a failure: nothing of a cut-off answer is handed on
    QString failure; ///< why there is no whole answer, for the log; empty when there is one

    bool hasFailed() const { return !failure.isEmpty(); }
};
