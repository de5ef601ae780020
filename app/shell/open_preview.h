#pragma once

#include "engine/model/file_record.h"

class QWidget;

/// Opens the slot's file and lets the user look through it; a file that doesn't open brings a message. Meanwhile the
/// windows go on repainting, but take no input. GUI thread only.
void OpenPreview(QWidget* parent, const FileRecord& slot, int yuvTable);
