#include "app/rules/yuv_form.h"

#include <algorithm>

#include "app/rules/reasons.h"
#include "app/rules/script_parameters.h"
#include "platform/text.h"
#include "video/file_kind.h"

namespace {

std::span<const rkLayoutItem> LayoutsOf(bool useScript) {
    return useScript ? rkScriptReaderLayouts() : rkInternalReaderLayouts();
}

int LayoutOf(const YuvForm& form) {
    return form.layouts[static_cast<std::size_t>(form.layout)].colorSpace;
}

std::wstring WhyScriptDisabled(const Capabilities& capabilities) {
    if (!capabilities.aviSynth) return kNeedsAviSynth;
    return capabilities.rawSource ? L"" : L"Needs the file \"avs_plugins/rawsource.dll\"";
}

}  // namespace

YuvForm YuvFormFrom(const FileRecord& record, const Capabilities& capabilities) {
    YuvForm form;
    form.fileName = FileNamePart(record.name);
    form.width = std::max(record.width, 0);
    form.height = std::max(record.height, 0);
    form.whyScriptDisabled = WhyScriptDisabled(capabilities);
    form.useScript = record.useAvs && form.whyScriptDisabled.empty();
    form.layouts = LayoutsOf(form.useScript);
    form.layout = rkLayoutPosition(form.layouts, record.yuvType);
    return form;
}

void ChooseParser(YuvForm& form, bool useScript) {
    const int colorSpace = LayoutOf(form);
    form.useScript = useScript;
    form.layouts = LayoutsOf(useScript);
    form.layout = rkLayoutPosition(form.layouts, colorSpace);
}

std::optional<BoxText> StoreForm(const YuvForm& form, FileRecord& record) {
    record.width = form.width;
    record.height = form.height;
    record.yuvType = LayoutOf(form);
    if (rkIsRawName(record.name)) TakeRawParameters(record);
    if (form.width == 0 || form.height == 0)
        return UserError(L"Specify nonzero width and height for YUV file!");
    record.useAvs = form.useScript;
    return {};
}

bool HasRawSettings(const FileRecord& record) {
    const auto layouts = LayoutsOf(record.useAvs);
    return record.width > 0 && record.height > 0 &&
           std::any_of(layouts.begin(), layouts.end(),
                       [&](const rkLayoutItem& item) { return item.colorSpace == record.yuvType; });
}
