#pragma once

#include <QString>
#include <functional>

namespace corvalence::gui {

/// Opens a page of the help by its topic, the name of its file without ".html": "addsize".
using OpenHelp = std::function<void(const QString& topic)>;

}  // namespace corvalence::gui
