#include <tolvane/source_plugin.h>

#include <iterator>

/// SOURCE_FUNCTION("file"): the video of every container, in the chroma form that it is stored in. The
/// libraries that are built of this file differ by their function's name.

namespace {

constexpr SourceParameter kParameters[] = {{"file", SourceFile, true}};

const SourceContainers* containers = nullptr;

bool Open(const SourceValue* values, SourceVideo* result, char* message, int messageSize) {
    return containers->open(values[0].text, SourceAsStored, result, message, messageSize);
}

}  // namespace

bool RegisterSources(SourceHost* host) {
    if (host->version != kSourceInterfaceVersion) return false;
    containers = host->containers;
    const SourceFunction function = {SOURCE_FUNCTION,  kParameters,      std::size(kParameters), Open,
                                     containers->read, containers->close};
    host->add(host, &function);
    return true;
}
