#include "gui/dialogs/criteria_groups.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>
#include <vector>

#include "gui/dialogs/radio_column.h"
#include "gui/support/text.h"

namespace corvalence::gui {

namespace {

using files::CriteriaForm;
using files::CriteriaGroup;
using files::FormField;
using SizeRelation = files::SizeCriterion::Relation;
using TimeRelation = files::TimeCriterion::Relation;

constexpr std::array<std::string_view, 4> kSizeRelations = {"Larger than", "Smaller than", "Equal to",
                                                            "Between"};
constexpr std::array<std::string_view, 2> kTimes = {"Created", "Modified"};
constexpr std::array<std::string_view, 4> kTimeRelations = {"Before", "After", "At", "Between"};
constexpr std::array<std::string_view, 2> kSearches = {"Search files which only contain text.",
                                                       "Search all files."};

std::string_view itself(std::string_view text) {
    return text;
}

QLabel* addNote(QLayout& layout, const QString& text) {
    auto* note = new QLabel(text);
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    layout.addWidget(note);
    return note;
}

QCheckBox* makeBox(std::string_view text, const QString& name) {
    auto* box = new QCheckBox(shown(text));
    box->setObjectName(name);
    return box;
}

class SizeGroup : public CriteriaGroupBox {
  public:
    SizeGroup() : CriteriaGroupBox(CriteriaGroup::Size, QStringLiteral("Size")) {
        auto* layout = new QVBoxLayout(this);
        auto* radios = new QHBoxLayout;
        relation_ = addRadioButtons(*radios, *this, "sizeButton", kSizeRelations, itself, 0);
        layout->addLayout(radios);
        auto* fields = new QHBoxLayout;
        first_ = addField(*fields, "firstSizeEdit", "Size");
        fields->addWidget(new QLabel(QStringLiteral("Bytes")));
        and_ = new QLabel(QStringLiteral("And"));
        fields->addWidget(and_);
        second_ = addField(*fields, "secondSizeEdit", "Second size");
        bytes_ = new QLabel(QStringLiteral("Bytes"));
        fields->addWidget(bytes_);
        fields->addStretch(1);
        layout->addLayout(fields);
        connect(relation_, &QButtonGroup::idToggled, this, [this] { enable(); });
        enable();
    }

    void read(CriteriaForm& form) const override {
        form.sizeRelation = relation();
        form.firstSize = bytesOf(first_->text());
        form.secondSize = bytesOf(second_->text());
    }
    QWidget* widgetOf(FormField field) const override {
        if (field == FormField::FirstSize) return first_;
        return field == FormField::SecondSize ? second_ : nullptr;
    }

  private:
    SizeRelation relation() const { return static_cast<SizeRelation>(relation_->checkedId()); }
    QLineEdit* addField(QLayout& layout, const char* name, const char* label) {
        static const QRegularExpression kNumber(QStringLiteral("[0-9]{0,10}"));
        auto* field = new QLineEdit;
        field->setObjectName(QLatin1String(name));
        field->setAccessibleName(QLatin1String(label));
        field->setValidator(new QRegularExpressionValidator(kNumber, field));
        field->setMaximumWidth(field->fontMetrics().averageCharWidth() * 18);
        layout.addWidget(field);
        return field;
    }
    void enable() {
        for (QWidget* widget : std::initializer_list<QWidget*>{and_, second_, bytes_})
            widget->setEnabled(files::hasSecond(relation()));
    }

    QButtonGroup* relation_;
    QLineEdit* first_;
    QLabel* and_;
    QLineEdit* second_;
    QLabel* bytes_;
};

class TimeGroup : public CriteriaGroupBox {
  public:
    TimeGroup() : CriteriaGroupBox(CriteriaGroup::Time, QStringLiteral("Time")) {
        auto* layout = new QVBoxLayout(this);
        auto* radios = new QHBoxLayout;
        which_ = addRadioButtons(*radios, *this, "whichTimeButton", kTimes, itself, 0);
        radios->addSpacing(fontMetrics().averageCharWidth() * 6);
        relation_ = addRadioButtons(*radios, *this, "timeButton", kTimeRelations, itself, 0);
        layout->addLayout(radios);
        auto* fields = new QHBoxLayout;
        first_ = addField(*fields, "firstTimeEdit", "Time");
        and_ = new QLabel(QStringLiteral("And"));
        fields->addWidget(and_);
        second_ = addField(*fields, "secondTimeEdit", "Second time");
        fields->addStretch(1);
        layout->addLayout(fields);
        connect(relation_, &QButtonGroup::idToggled, this, [this] { enable(); });
        enable();
    }

    void read(CriteriaForm& form) const override {
        form.time = {static_cast<files::TimeCriterion::Which>(which_->checkedId()), relation(),
                     timeOf(*first_), timeOf(*second_)};
    }
    QWidget* widgetOf(FormField field) const override {
        return field == FormField::SecondTime ? second_ : nullptr;
    }

  private:
    TimeRelation relation() const { return static_cast<TimeRelation>(relation_->checkedId()); }
    static base::LocalTime timeOf(const QDateTimeEdit& field) {
        const QDate date = field.date();
        const QTime time = field.time();
        return {date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()};
    }
    static QDateTimeEdit* addField(QLayout& layout, const char* name, const char* label) {
        // Whole minutes of today; a clock that knows no summer time takes every time as it is typed.
        const QDateTime now = QDateTime::currentDateTime();
        const QTime time(now.time().hour(), now.time().minute());
        auto* field = new QDateTimeEdit(QDateTime(now.date(), time, Qt::UTC));
        field->setTimeSpec(Qt::UTC);
        field->setObjectName(QLatin1String(name));
        field->setAccessibleName(QLatin1String(label));
        field->setDisplayFormat(QStringLiteral("dd.MM.yyyy  HH:mm:ss"));
        field->setCalendarPopup(true);
        layout.addWidget(field);
        return field;
    }
    void enable() {
        and_->setEnabled(files::hasSecond(relation()));
        second_->setEnabled(files::hasSecond(relation()));
    }

    QButtonGroup* which_;
    QButtonGroup* relation_;
    QDateTimeEdit* first_;
    QLabel* and_;
    QDateTimeEdit* second_;
};

class TypeGroup : public CriteriaGroupBox {
  public:
    explicit TypeGroup(const QString& verb) : CriteriaGroupBox(CriteriaGroup::Type, QStringLiteral("Type")) {
        auto* layout = new QVBoxLayout(this);
        auto* fields = new QHBoxLayout;
        extension_ = new QLineEdit;
        extension_->setObjectName(QStringLiteral("extensionEdit"));
        extension_->setAccessibleName(QStringLiteral("Extension"));
        fields->addWidget(extension_);
        fields->addWidget(new QLabel(QStringLiteral("[e.g. EXE]")));
        layout->addLayout(fields);
        addNote(*layout, QStringLiteral("NOTE: Leaving this field blank will %1 any file which does not have "
                                        "an extension.  Enter * for any extension.")
                             .arg(verb));
    }

    void read(CriteriaForm& form) const override { form.type.extension = bytesOf(extension_->text()); }
    QWidget* widgetOf(FormField) const override { return nullptr; }

  private:
    QLineEdit* extension_;
};

class AttributesGroup : public CriteriaGroupBox {
  public:
    explicit AttributesGroup(const QString& verb)
        : CriteriaGroupBox(CriteriaGroup::Attributes, QStringLiteral("Attributes")) {
        auto* layout = new QVBoxLayout(this);
        auto* grid = new QGridLayout;
        constexpr int kInColumn = 4;  // exact boxes, then those with others
        for (int i = 0; i < 2 * kInColumn; ++i)
            grid->addWidget(makeNext(), i % kInColumn, i / kInColumn);
        grid->addWidget(makeNext(), kInColumn, 0);
        layout->addLayout(grid);
        auto* families = new QHBoxLayout;
        addFamily(*families, "NT File System only");
        addFamily(*families, "FAT32 and NT File Systems");
        layout->addLayout(families);
        addNote(*layout, QStringLiteral("NOTE: Leaving all the boxes unchecked will %1 any file which does "
                                        "not have any attributes set.")
                             .arg(verb));
        for (QCheckBox* box : boxes_)
            connect(box, &QCheckBox::toggled, this, [this] { enable(); });
    }

    void read(CriteriaForm& form) const override { form.attributes = criterion(); }
    QWidget* widgetOf(FormField) const override { return nullptr; }

  private:
    QCheckBox* makeNext() {
        const std::size_t number = boxes_.size();
        boxes_.push_back(
            makeBox(files::kAttributeBoxes[number].text, QStringLiteral("attributeBox%1").arg(number)));
        return boxes_.back();
    }
    void addFamily(QLayout& layout, const char* title) {
        auto* family = new QGroupBox(QLatin1String(title));
        auto* column = new QVBoxLayout(family);
        column->addWidget(makeNext());
        column->addWidget(makeNext());
        layout.addWidget(family);
    }
    files::AttributeCriterion criterion() const {
        files::AttributeCriterion checked;
        for (std::size_t i = 0; i < boxes_.size(); ++i)
            if (boxes_[i]->isChecked()) files::check(checked, files::kAttributeBoxes[i]);
        return checked;
    }
    void enable() {
        const files::AttributeCriterion checked = criterion();
        for (std::size_t i = 0; i < boxes_.size(); ++i)
            boxes_[i]->setEnabled(files::isEnabled(checked, files::kAttributeBoxes[i]));
    }

    std::vector<QCheckBox*> boxes_;
};

class ContentsGroup : public CriteriaGroupBox {
  public:
    ContentsGroup() : CriteriaGroupBox(CriteriaGroup::Contents, QStringLiteral("Contents")) {
        auto* layout = new QVBoxLayout(this);
        text_ = new QLineEdit;
        text_->setObjectName(QStringLiteral("contentsEdit"));
        text_->setAccessibleName(QStringLiteral("Text"));
        layout->addWidget(text_);
        auto* boxes = new QHBoxLayout;
        matchCase_ = makeBox("Match case.", QStringLiteral("matchCaseBox"));
        wholeWord_ = makeBox("Whole word.", QStringLiteral("wholeWordBox"));
        boxes->addWidget(matchCase_);
        boxes->addWidget(wholeWord_);
        boxes->addStretch(1);
        layout->addLayout(boxes);
        search_ = addRadioButtons(*layout, *this, "searchButton", kSearches, itself, 1);
    }

    void read(CriteriaForm& form) const override {
        form.contents = {bytesOf(text_->text()), matchCase_->isChecked(), wholeWord_->isChecked(),
                         search_->checkedId() == 0};
    }
    QWidget* widgetOf(FormField field) const override {
        return field == FormField::Contents ? text_ : nullptr;
    }

  private:
    QLineEdit* text_;
    QCheckBox* matchCase_;
    QCheckBox* wholeWord_;
    QButtonGroup* search_;
};

class AbilitiesGroup : public CriteriaGroupBox {
  public:
    AbilitiesGroup()
        : CriteriaGroupBox(CriteriaGroup::Abilities, QStringLiteral("Abilities / Functionality")) {
        auto* layout = new QVBoxLayout(this);
        network_ = makeBox(
            "The ability to communicate across a network, the internet, or with other applications on your "
            "system.",
            QStringLiteral("networkBox"));
        system_ = makeBox("Core operating system functionality. ", QStringLiteral("systemBox"));
        cookies_ = makeBox("Cookie Index Files.", QStringLiteral("cookiesBox"));
        for (QCheckBox* box : {network_, system_, cookies_})
            layout->addWidget(box);
    }

    void read(CriteriaForm& form) const override {
        form.abilities = {network_->isChecked(), system_->isChecked(), cookies_->isChecked()};
    }
    QWidget* widgetOf(FormField field) const override {
        return field == FormField::Abilities ? network_ : nullptr;
    }

  private:
    QCheckBox* network_;
    QCheckBox* system_;
    QCheckBox* cookies_;
};

}  // namespace

CriteriaGroupBox::CriteriaGroupBox(CriteriaGroup group, const QString& title)
    : QGroupBox(title), group_(group) {
    setObjectName(title.section(QLatin1Char(' '), 0, 0).toLower() + QStringLiteral("Group"));
}

CriteriaGroupBox* makeCriteriaGroup(CriteriaGroup group, const QString& verb) {
    switch (group) {
        case CriteriaGroup::Size:
            return new SizeGroup;
        case CriteriaGroup::Time:
            return new TimeGroup;
        case CriteriaGroup::Type:
            return new TypeGroup(verb);
        case CriteriaGroup::Attributes:
            return new AttributesGroup(verb);
        case CriteriaGroup::Contents:
            return new ContentsGroup;
        case CriteriaGroup::Abilities:
            break;
    }
    return new AbilitiesGroup;
}

}  // namespace corvalence::gui
