#pragma once

#include "app/Request.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What the program was started for.
struct CommandLine {
    std::optional<Request> request; ///< none: to be seen
    QString answer;                 ///< a text to print and end with; empty when there is none
    bool isWrong = false;           ///< the answer is a complaint

    /// Reads the arguments, the program's name first. There may be one request at most; options with a single
    /// dash are Qt's.
    static CommandLine parse(const QStringList& arguments, const QString& version);
};
