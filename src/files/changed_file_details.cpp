#include "files/changed_file_details.h"

#include "files/file_texts.h"
#include "platform/time_text.h"

namespace corvalence::files {

namespace {

DetailLine line(std::string labelThen, std::string then, std::string labelNow, std::string now) {
    const bool differs = then != now;
    return {std::move(labelThen), std::move(then), std::move(labelNow), std::move(now), differs};
}

}  // namespace

std::array<DetailLine, 5> detailLines(const ChangedFileDetails& details, platform::Clock& clock) {
    const FileRecord& then = details.then;
    const FileRecord& now = details.now;
    std::array<DetailLine, 5> lines = {{
        line("Size when added:", formatSizeText(then.size), "Size now:", formatSizeText(now.size)),
        line("Digest value when added:", then.digest, "Digest value now:", now.digest),
        line("Attributes when added:", std::string(attributeText(then.attributes)),
             "Attributes  now:", std::string(attributeText(now.attributes))),
        line("Modification time when added:", platform::formatFileTime(clock, then.written),
             "Modification time now:", platform::formatFileTime(clock, now.written)),
        line("Creation time when added:", platform::formatFileTime(clock, then.created),
             "Creation time now:", platform::formatFileTime(clock, now.created)),
    }};
    // Compared by what records carry, shown with all bits: a file beyond 4 GiB that kept its size is not
    // drawn red.
    lines[0].now = formatSizeText(details.sizeNow);
    return lines;
}

}  // namespace corvalence::files
