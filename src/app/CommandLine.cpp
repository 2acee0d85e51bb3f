#include "app/CommandLine.h"

namespace {

QString option(const Choice<Request>& choice)
{
    return QStringLiteral("--") + QLatin1String(choice.rawValue);
}

QString usage()
{
    constexpr int column = 18;
    QString text = QStringLiteral("pellar                  starts Pellar, or shows the one that runs\n");
    const auto add = [&text](const QString& name, const QString& what) {
        text += QStringLiteral("pellar ") + name.leftJustified(column - 1) + what + u'\n';
    };
    for (const Choice<Request>& each : Choices<Request>::all) {
        add(option(each), QLatin1String(each.displayName));
    }
    add(QStringLiteral("--version"), QStringLiteral("prints the version"));
    add(QStringLiteral("--help"), QStringLiteral("prints this"));
    return text;
}

} // namespace

CommandLine CommandLine::parse(const QStringList& arguments, const QString& version)
{
    if (arguments.contains(QStringLiteral("--help")) || arguments.contains(QStringLiteral("-h"))) {
        return {.request = {}, .answer = usage()};
    }
    if (arguments.contains(QStringLiteral("--version"))) {
        return {.request = {}, .answer = QStringLiteral("Pellar %1\n").arg(version)};
    }
    CommandLine line;
    for (const QString& argument : arguments.mid(1)) {
        if (!argument.startsWith(QStringLiteral("--"))) {
            continue; // one of Qt's
        }
        const auto request = withRawValue<Request>(argument.mid(2));
        if (!request || line.request) {
            return {.request = {},
                    .answer = QStringLiteral("pellar: what is “%1” here? See pellar --help.\n").arg(argument),
                    .isWrong = true};
        }
        line.request = request;
    }
    return line;
}
