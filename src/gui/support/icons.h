#pragma once

#include <QIcon>

namespace corvalence::gui {

/// A picture of the program's own artwork by its name ("create"), sharp at every size. Empty where there is
/// none of that name.
QIcon icon(const QString& name);

}  // namespace corvalence::gui
