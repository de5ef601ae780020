#pragma once

#include <tolvane/source_plugin.h>

#include "platform/script_host/clip.h"

/// The way from a clip to the plain operations that a plug-in hands over.

/// Moves the clip, or the message, to where `SourceFunction::open` has them.
bool HandOverClip(ScriptResult opened, SourceVideo* result, char* message, int messageSize);

/// `SourceFunction::open` by a function that makes a clip and may throw.
template <ScriptResult (*openClip)(const SourceValue* values)>
bool OpenClip(const SourceValue* values, SourceVideo* result, char* message, int messageSize) {
    ScriptResult opened;
    try {
        opened = openClip(values);
    } catch (...) {
        opened.error = "there isn't enough memory";
    }
    return HandOverClip(std::move(opened), result, message, messageSize);
}

/// `SourceFunction::read` and `close`.
bool ReadClip(void* video, int frame, unsigned char* buffer);
void CloseClip(void* video);

/// `RegisterSources` of a library with one function. `function` stays.
bool RegisterSource(SourceHost* host, const SourceFunction& function);
