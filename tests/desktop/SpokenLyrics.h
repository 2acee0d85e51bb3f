#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>

using namespace Qt::Literals::StringLiterals;

/// A part of a program's windows, as the accessibility bus names it.
struct SpokenPart {
    QString program = u"org.a11y.atspi.Registry"_s; ///< by default the root of all programs
    QDBusObjectPath path{u"/org/a11y/atspi/accessible/root"_s};
};
Q_DECLARE_METATYPE(SpokenPart)

inline QDBusArgument& operator<<(QDBusArgument& argument, const SpokenPart& part)
{
    argument.beginStructure();
    argument << part.program << part.path;
    argument.endStructure();
    return argument;
}
inline const QDBusArgument& operator>>(const QDBusArgument& argument, SpokenPart& part)
{
    argument.beginStructure();
    argument >> part.program >> part.path;
    argument.endStructure();
    return argument;
}

/// What a screen reader is told of the lyrics in another program's windows.
class SpokenLyrics
{
public:
    SpokenLyrics()
    {
        qDBusRegisterMetaType<SpokenPart>();
        qDBusRegisterMetaType<QList<SpokenPart>>();
        QDBusInterface service(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s);
        const QDBusReply<QString> address = service.call(u"GetAddress"_s);
        _bus = QDBusConnection::connectToBus(address.value(), u"accessibility"_s);
    }

    /// Whether the lyrics are to be seen anywhere.
    bool find()
    {
        _lyrics = find(SpokenPart(), 0);
        return _lyrics.has_value();
    }

    /// The line that is sung, or what stands in its place; empty when there is nothing.
    QString line() const
    {
        const auto parts = _lyrics ? children(*_lyrics) : QList<SpokenPart>();
        for (const SpokenPart& part : parts) {
            if (const QString said = name(part); !said.isEmpty()) {
                return said;
            }
        }
        return {};
    }

private:
    std::optional<SpokenPart> find(const SpokenPart& part, int depth) const
    {
        constexpr int deepest = 12;
        if (name(part) == u"Lyrics") {
            return part;
        }
        const auto parts = depth < deepest ? children(part) : QList<SpokenPart>();
        for (const SpokenPart& child : parts) {
            if (const auto found = find(child, depth + 1)) {
                return found;
            }
        }
        return std::nullopt;
    }
    QList<SpokenPart> children(const SpokenPart& part) const
    {
        QDBusInterface accessible(part.program, part.path.path(), u"org.a11y.atspi.Accessible"_s, _bus);
        const QDBusReply<QList<SpokenPart>> reply = accessible.call(u"GetChildren"_s);
        return reply.value();
    }
    QString name(const SpokenPart& part) const
    {
        QDBusMessage question = QDBusMessage::createMethodCall(
            part.program, part.path.path(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
        question << u"org.a11y.atspi.Accessible"_s << u"Name"_s;
        const QDBusReply<QVariant> reply = _bus.call(question);
        return reply.value().toString();
    }

    QDBusConnection _bus{QString()};
    std::optional<SpokenPart> _lyrics;
};
