#pragma once

#include <functional>

class QDialog;
class QDialogButtonBox;

/// The row of "OK" and "Cancel" at the foot of a dialog, in the platform's order, wired to its `accept` and
/// `reject`. "OK" is the default, Escape means "Cancel". With `help`, a "Help" button calls it, and so does
/// F1.
///
/// The row belongs to the dialog, whose layout takes it last.
QDialogButtonBox* MakeDialogButtons(QDialog& dialog, std::function<void()> help = {});
