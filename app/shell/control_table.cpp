#include "app/shell/control_table.h"

#include "app/dialogs/controls.h"
#include "platform/qt/wide_text.h"

void ControlTable::Show(const MainForm& form) {
    for (std::size_t i = 0; i < widgets.size(); ++i) {
        if (!widgets[i]) continue;
        SetAvailable(*widgets[i], form.whyDisabled[i]);
        widgets[i]->setAccessibleDescription(ToQString(form.whyDisabled[i]));
    }
}
