#include "app/rules/capabilities.h"

#include "platform/file.h"

Capabilities FindCapabilities(const ISettingsStore& settings, const std::wstring& programDirectory) {
    const auto hasPlugin = [&](const wchar_t* name) {
        return ReadOnlyFile().Open(programDirectory + L"avs_plugins/" + name);
    };
    Capabilities found;
    found.aviSynth = settings.ReadNumber("script_host").value_or(1) != 0;
    found.avss = hasPlugin(L"avss.dll");
    found.ffmpegSource = hasPlugin(L"FFMpegSource.dll");
    found.qtSource = hasPlugin(L"QTSource.dll");
    found.rawSource = hasPlugin(L"rawsource.dll");
    return found;
}
