#pragma once

#include "app/rules/main_form.h"

#include <QWidget>

#include <array>

/// The widgets of the main dialog by what they are for. They belong to the dialog, which outlives the table.
class ControlTable {
public:
    void Set(Control control, QWidget* widget) { widgets[static_cast<std::size_t>(control)] = widget; }
    QWidget* Of(Control control) const { return widgets[static_cast<std::size_t>(control)]; }

    /// Enables what can be used now. What can't says in its tooltip, and to a screen reader, what turns it
    /// on.
    void Show(const MainForm& form);

private:
    std::array<QWidget*, kControlCount> widgets{};
};
