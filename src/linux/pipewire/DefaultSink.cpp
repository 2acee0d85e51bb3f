#include "linux/pipewire/DefaultSink.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace {

const QString usedKey = QStringLiteral("default.audio.sink");
const QString wishedKey = QStringLiteral("default.configured.audio.sink");
const QString nameField = QStringLiteral("name");

} // namespace

DefaultSink::DefaultSink(pw_registry* registry, quint32 metadata, std::function<void()> changed)
    : _changed(std::move(changed))
    , _metadata(static_cast<pw_metadata*>(
          pw_registry_bind(registry, metadata, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0)))
{
    static const pw_metadata_events events = {
        .version = PW_VERSION_METADATA_EVENTS,
        .property =
            [](void* data, quint32 subject, const char* key, const char* /*type*/, const char* value) {
                static_cast<DefaultSink*>(data)->propertyChanged(subject, key, value);
                return 0;
            },
    };
    if (_metadata != nullptr) {
        pw_metadata_add_listener(_metadata, &_listener, &events, this);
    }
}

DefaultSink::~DefaultSink()
{
    if (_metadata != nullptr) {
        spa_hook_remove(&_listener);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(_metadata));
    }
}

void DefaultSink::wish(const QString& name)
{
    if (_metadata != nullptr) {
        const QByteArray value = QJsonDocument(QJsonObject{{nameField, name}}).toJson(QJsonDocument::Compact);
        pw_metadata_set_property(_metadata, PW_ID_CORE, wishedKey.toUtf8().constData(), "Spa:String:JSON",
                                 value.constData());
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
    bool isOurs = false;
    for (auto& [ours, field] : {std::pair<const QString&, QString&>{usedKey, _used}, {wishedKey, _wished}}) {
        if (key == nullptr || changed == ours) {
            field = name;
            isOurs = true;
        }
    }
    if (isOurs) {
        _changed();
    }
}
