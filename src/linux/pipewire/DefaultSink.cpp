#include "linux/pipewire/DefaultSink.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

const QString usedKey = QStringLiteral("default.audio.sink");
const QString wishedKey = QStringLiteral("default.configured.audio.sink");
const QString nameField = QStringLiteral("name");

constexpr double answerTime = 0.3; // seconds; a session manager takes some milliseconds

} // namespace

DefaultSink::DefaultSink(PipewireLoop& loop, pw_registry* registry, quint32 metadata,
                         std::function<void()> changed)
    : _changed(std::move(changed))
    , _registry(registry)
    , _id(metadata)
    , _timer(loop, [this] { answerIsDue(); })
{
    bind();
}

DefaultSink::~DefaultSink()
{
    release();
}

/// Has the server send all properties again.
void DefaultSink::bind()
{
    static const pw_metadata_events events = {
        .version = PW_VERSION_METADATA_EVENTS,
        .property =
            [](void* data, quint32 subject, const char* key, const char* /*type*/, const char* value) {
                static_cast<DefaultSink*>(data)->propertyChanged(subject, key, value);
                return 0;
            },
    };
    release();
    _metadata = static_cast<pw_metadata*>(
        pw_registry_bind(_registry, _id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
    if (_metadata != nullptr) {
        pw_metadata_add_listener(_metadata, &_listener, &events, this);
    }
}

void DefaultSink::release()
{
    if (_metadata != nullptr) {
        spa_hook_remove(&_listener);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(std::exchange(_metadata, nullptr)));
    }
}

void DefaultSink::wish(const QString& name)
{
    if (_metadata != nullptr) {
        const QByteArray value = QJsonDocument(QJsonObject{{nameField, name}}).toJson(QJsonDocument::Compact);
        pw_metadata_set_property(_metadata, PW_ID_CORE, wishedKey.toUtf8().constData(), "Spa:String:JSON",
                                 value.constData());
        _wished = name;
        awaitAnswer();
    }
}

void DefaultSink::awaitAnswer()
{
    _patience = answerTime;
    _timer.fireAfter(_patience);
}

/// The server sends no changes while it lists all properties to a new listener, so the answer may have been
/// lost. The list is asked for again, at growing intervals, since the choice may also be ignored.
void DefaultSink::answerIsDue()
{
    if (_used != _wished) {
        bind();
        _patience *= 10;
        _timer.fireAfter(_patience);
    }
}

/// Without a key everything is gone, without a value that one property.
void DefaultSink::propertyChanged(quint32 subject, const char* key, const char* value)
{
    if (subject != PW_ID_CORE) {
        return;
    }
    const QString changed = QString::fromUtf8(key);
    const QString name = QJsonDocument::fromJson(value).object().value(nameField).toString();
    const QString wishedBefore = _wished;
    bool isOurs = false;
    for (auto& [ours, field] : {std::pair<const QString&, QString&>{usedKey, _used}, {wishedKey, _wished}}) {
        if (key == nullptr || changed == ours) {
            field = name;
            isOurs = true;
        }
    }
    if (_wished != wishedBefore) {
        awaitAnswer();
    }
    if (isOurs) {
        _changed();
    }
}
