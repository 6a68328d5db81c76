#include "cli/changed_file_text.h"

#include "cli/console_text.h"

namespace corvalence::cli {

namespace {

constexpr std::size_t kLabelWidth = 32;

std::string labelled(std::string_view mark, const std::string& label, const std::string& value) {
    const std::size_t gap = label.size() < kLabelWidth ? kLabelWidth - label.size() : 1;
    return std::string(mark).append(label).append(gap, ' ').append(value) + "\n";
}

}  // namespace

void writeChangedFile(std::ostream& out, const files::ChangedFileDetails& details, platform::Clock& clock) {
    std::string text = labelled("    ", "File type:", shown(details.type));
    for (const files::DetailLine& line : files::detailLines(details, clock)) {
        text += labelled("    ", line.labelThen, line.then);
        text += labelled(line.differs ? "  * " : "    ", line.labelNow, line.now);
    }
    text += "    " + details.lastChecked + "\n";
    out << text;
}

}  // namespace corvalence::cli
