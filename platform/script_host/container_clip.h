#pragma once

#include <optional>
#include <string>

#include "platform/media/media_file.h"
#include "platform/script_host/clip.h"

/// The video of a container file as a clip; its description tells how the decoded pictures became the
/// surface. Without `surface` it is the one that keeps the pictures' chroma form. Fails if the pictures can't
/// be handed over as the surface that was asked for without losing what they hold. `path` is UTF-8. Throws
/// std::bad_alloc.
ScriptResult OpenContainerClip(const std::string& path, MediaFile::Container container,
                               std::optional<Surface> surface);

/// The surface that a script names "RGB24", "YV12" or "YUY2", in any case; none for any other text.
std::optional<Surface> SurfaceByName(const std::string& name);
