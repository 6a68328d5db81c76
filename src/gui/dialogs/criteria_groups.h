#pragma once

#include <QGroupBox>

#include "files/criteria_form.h"

namespace corvalence::gui {

/// The fields of one criterion.
class CriteriaGroupBox : public QGroupBox {
  public:
    CriteriaGroupBox(files::CriteriaGroup group, const QString& title);

    files::CriteriaGroup group() const noexcept { return group_; }
    /// Whether the criterion takes part: always where the group has no box of its own.
    bool takesPart() const { return !isCheckable() || isChecked(); }

    virtual void read(files::CriteriaForm& form) const = 0;
    /// The widget of a field; null where it is none of this group's.
    virtual QWidget* widgetOf(files::FormField field) const = 0;

  private:
    files::CriteriaGroup group_;
};

/// `verb`: "add" or "remove", for the notes.
CriteriaGroupBox* makeCriteriaGroup(files::CriteriaGroup group, const QString& verb);

}  // namespace corvalence::gui
