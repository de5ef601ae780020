#pragma once

#include <string>
#include <vector>

#include "app/rules/capabilities.h"
#include "engine/model/file_record.h"

/// What the dialog of script parameters shows.
struct ScriptForm {
    struct Filter {
        int value;           ///< an rkScriptFilter
        std::wstring label;  ///< says how well the filter suits the file
        std::wstring defaultParameters;
    };
    std::vector<Filter> filters;
    int filter = 0;                 ///< selected position
    std::wstring parameters;        ///< the edit, which is on with `customParameters`
    bool customParameters = false;  ///< "Edit parameters string manually"
    bool onlyPreferred = false;     ///< "Do not try to open the file using different filters"
};

constexpr std::size_t kMaxScriptParameters = 1024;

/// A filter whose plug-in is missing isn't listed. The first one is selected if the record's own isn't there.
ScriptForm ScriptFormFrom(const FileRecord& record, const Capabilities& capabilities);

/// Another filter was selected: its default replaces the text, unless that is edited by hand.
void ChooseFilter(ScriptForm& form, int position);

/// The box for editing by hand was clicked. Off brings the default back.
void SetCustomParameters(ScriptForm& form, bool on);

void StoreForm(const ScriptForm& form, FileRecord& record);
