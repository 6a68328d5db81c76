#include "components/file_report.h"

#include "base/record_text.h"
#include "files/file_texts.h"
#include "platform/time_text.h"

namespace corvalence::components {

namespace {

/// A line of any of the digests.
std::optional<files::FileRecord> parse(std::string_view line) {
    const auto fields = base::splitFields(line);
    return fields.size() < 2 ? std::nullopt : files::FileRecord::parse(line, fields[1].size());
}

/// Two lines a file: its record as it is listed comes first.
bool isOld(std::size_t number) {
    return number % 2 == 0;
}

}  // namespace

void FileReport::unchecked(const std::string& path, const std::string& reason) {
    notChecked_.push_back({path, reason});
}

void FileReport::changed(const files::ChangedFileDetails& details, files::Reaction, bool,
                         const std::string&) {
    for (const files::FileRecord* record : {&details.then, &details.now}) {
        const std::string line = record->render();
        report_.addLine(base::withoutLineEnd(line));
    }
}

void FileReport::note(const std::string&, const std::string&) {
    // Only of updates and restores, which no check makes that writes a report.
}

std::optional<std::vector<std::string>> FileRenderer::columns(std::string_view line) const {
    const auto record = parse(line);
    if (!record) return std::nullopt;
    return std::vector{std::string(system_.paths.fileName(record->path)),
                       record->digest,
                       std::to_string(record->size),
                       files::describeFileType(record->path, system_.paths, system_.types),
                       std::string(system_.paths.folder(record->path)),
                       files::attributeLetters(record->attributes),
                       platform::formatFileTime(system_.clock, record->written),
                       platform::formatFileTime(system_.clock, record->created)};
}

std::vector<reports::ReportField> FileRenderer::fields(std::size_t number, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    return {{"code", std::string(isOld(number) ? "old" : "new")},
            {"path", record->path, true},
            {"digest", record->digest},
            {"size", std::to_string(record->size)},
            {"attributes", std::string(files::attributeText(record->attributes))},
            {"modified", platform::formatFileTime(system_.clock, record->written)},
            {"created", platform::formatFileTime(system_.clock, record->created)}};
}

std::string FileRenderer::text(std::size_t number, std::string_view line) const {
    const auto record = parse(line);
    if (!record) return {};
    const std::string heading =
        isOld(number) ? record->path + " has been changed!\nWhen added:" : std::string("Now:");
    return heading + "\nDigest value: " + record->digest + "\nSize: " + files::formatSizeText(record->size) +
           "\nAttributes: " + std::string(files::attributeText(record->attributes)) +
           "\nCreation time: " + platform::formatFileTime(system_.clock, record->created) +
           "\nModification time: " + platform::formatFileTime(system_.clock, record->written);
}

}  // namespace corvalence::components
