#pragma once

#include <QWidget>
#include <string>

class QLineEdit;

namespace corvalence::gui {

/// A field for a folder with "Browse…" beside it; its edit is the field's focus proxy and has the name
/// "locationEdit", the button "browseButton".
class FolderField : public QWidget {
  public:
    /// `withSeparator`: a folder that is chosen ends in one.
    FolderField(char separator, bool withSeparator, QWidget* parent = nullptr);

    QLineEdit& edit() noexcept { return *edit_; }
    std::string text() const;
    void setText(const std::string& text);

  private:
    void browse();

    char separator_;
    bool withSeparator_;
    QLineEdit* edit_;
};

}  // namespace corvalence::gui
