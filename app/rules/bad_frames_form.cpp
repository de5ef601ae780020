#include "app/rules/bad_frames_form.h"

#include <algorithm>

#include "app/rules/reasons.h"

BadFramesForm BadFramesFormFrom(const BadFramesSettings& settings, bool comparing) {
    BadFramesForm form;
    if (!settings.save) form.whyDisabled = Needs(L"Save \"bad frames\"");
    for (int type = 0; type < kBadFramesTypes; ++type) {
        std::wstring& why = form.whyTypeDisabled[static_cast<std::size_t>(type)];
        const bool fits = (type == BadOriginalProcessed) != comparing;
        if (!settings.save)
            why = form.whyDisabled;
        else if (!fits)
            why = comparing ? L"Not with \"Comparative analysis\"" : Needs(L"Comparative analysis");
    }

    if (comparing) {
        const bool isListed =
            settings.frameType > BadOriginalProcessed && settings.frameType < kBadFramesTypes;
        form.type = isListed ? settings.frameType : BadFirstSecond;
    }
    form.number = settings.count == 0 ? kDefaultBadFrames : std::clamp(settings.count, 1, kMaxBadFrames);
    form.radiusSteps = std::clamp(settings.radius / kRadiusStep, 0, kMaxRadiusSteps);
    form.radiusShown = settings.radius;
    form.outputDir = settings.outputDir;
    return form;
}

void MoveRadius(BadFramesForm& form, int radiusSteps) {
    form.radiusSteps = radiusSteps;
    form.radiusShown = RadiusOf(radiusSteps);
}

void StoreForm(const BadFramesForm& form, BadFramesSettings& settings) {
    if (!form.whyDisabled.empty()) return;
    settings.frameType = form.type;
    settings.count = form.number;
    settings.radius = RadiusOf(form.radiusSteps);
    settings.outputDir = form.outputDir;
}
