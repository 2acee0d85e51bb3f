#pragma once

#include "linux/pipewire/PipewireLoop.h"

#include <QString>

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

#include <functional>

/// The default sink as the session manager reports it, and the user's choice of it. Lives on the PipeWire
/// thread, no longer than the connection.
class DefaultSink
{
public:
    /// `metadata` is the id of the object that holds it.
    DefaultSink(PipewireLoop& loop, pw_registry* registry, quint32 metadata, std::function<void()> changed);
    ~DefaultSink();
    DefaultSink(const DefaultSink&) = delete;
    DefaultSink& operator=(const DefaultSink&) = delete;

    /// The name of the sink in use, else of the one wished for; empty when neither is known.
    QString name() const { return _used.isEmpty() ? _wished : _used; }

    /// Sets the user's choice. The session manager, when it runs, follows and remembers it.
    void wish(const QString& name);

private:
    void bind();
    void release();
    void awaitAnswer();
    void answerIsDue();
    void propertyChanged(quint32 subject, const char* key, const char* value);

    std::function<void()> _changed;
    pw_registry* _registry;
    quint32 _id;
    pw_metadata* _metadata = nullptr;
    spa_hook _listener{};
    PipewireLoop::Timer _timer;
    double _patience = 0; ///< seconds
    QString _used;
    QString _wished;
};
