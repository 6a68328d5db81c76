#include "cli/json_writer.h"

#include "base/utf8.h"
#include "cli/console_text.h"

namespace corvalence::cli {

void JsonWriter::raw(std::string_view name, std::string_view value) {
    if (!isFirst_) out_ << ", ";
    isFirst_ = false;
    if (!name.empty()) out_ << jsonString(name) << ": ";
    out_ << value;
}

void JsonWriter::begin(std::string_view name, char opening, char closing) {
    raw(name, std::string_view(&opening, 1));
    closings_.push_back(closing);
    isFirst_ = true;
    wasBegun_ = true;
}

void JsonWriter::beginObject(std::string_view name) {
    begin(name, '{', '}');
}

void JsonWriter::beginArray(std::string_view name) {
    begin(name, '[', ']');
}

void JsonWriter::end() {
    out_ << closings_.back();
    closings_.pop_back();
    isFirst_ = false;
    if (closings_.empty()) out_ << '\n';
}

void JsonWriter::endAll() {
    while (!closings_.empty())
        end();
}

bool JsonWriter::backToOutermost() {
    if (!wasBegun_) beginObject();
    while (closings_.size() > 1)
        end();
    return !closings_.empty();
}

void JsonWriter::text(std::string_view name, std::string_view value) {
    raw(name, jsonString(value));
}

void JsonWriter::time(std::string_view name, base::FileTime value) {
    text(name, isoTime(value));
}

void JsonWriter::path(std::string_view name, std::string_view value) {
    text(name, value);
    if (!base::isUtf8(value)) text(std::string(name) + "_base64", base64(value));
}

}  // namespace corvalence::cli
