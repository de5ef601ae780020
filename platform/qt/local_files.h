#pragma once

#include <string>
#include <vector>

class QMimeData;

/// The paths of what is dragged or dropped, if all of it is regular files of this machine; empty if anything
/// else is among it: a directory, a device, a web address. Names that aren't UTF-8 come through.
std::vector<std::wstring> LocalFiles(const QMimeData& data);
