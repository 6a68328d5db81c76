#pragma once

#include <QMimeData>
#include <string>
#include <vector>

namespace corvalence::gui {

/// The paths of the files and folders that are dropped or pasted, byte for byte; what lies on no disk of this
/// machine is left out.
std::vector<std::string> pathsOf(const QMimeData& data);

}  // namespace corvalence::gui
