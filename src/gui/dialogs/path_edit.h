#pragma once

#include <QLineEdit>
#include <string>

#include "gui/support/text.h"

namespace corvalence::gui {

/// A field for a path. One that was set and not edited stays byte for byte what it was, also where its bytes
/// cannot be shown.
class PathEdit : public QLineEdit {
  public:
    using QLineEdit::QLineEdit;

    void setPath(std::string path) {
        path_ = std::move(path);
        setText(shown(path_));
    }
    std::string path() const { return text() == shown(path_) ? path_ : bytesOf(text()); }

  private:
    std::string path_;
};

}  // namespace corvalence::gui
