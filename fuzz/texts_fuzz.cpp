// Numbers and paths as records and users write them.

#include "base/number_text.h"
#include "base/path_rules.h"
#include "base/record_text.h"
#include "fuzz_target.h"

namespace {

using namespace corvalence;

void tryPaths(const base::PathRules& rules, std::string_view text, std::string_view current) {
    const std::string clean = rules.absolute(text, current);
    fuzz::require(clean.empty() == text.empty(), "only the empty path stays empty");
    fuzz::require(rules.absolute(clean, current) == clean, "a clean path stays as it is");
    fuzz::require(std::string(rules.folder(clean)) + std::string(rules.fileName(clean)) == clean,
                  "folder and name make the path");
    fuzz::require(rules.equal(text, text) && rules.beginsWith(text, text.substr(0, text.size() / 2)),
                  "a path equals itself");
    fuzz::require(rules.comparisonKey(text).size() == text.size(), "a key has the path's length");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    const auto number = base::scanInteger(text);
    if (number) fuzz::require(base::scanInteger(std::to_string(*number)) == number, "a number is read again");
    const auto units = base::scanWholeUnits(text);
    if (units)
        fuzz::require(base::scanWholeUnits(base::twoDecimals(*units)) == units, "units are read again");
    tryPaths({}, text, "/home/user");
    tryPaths({.separator = '\\', .ignoresCase = true}, text, "C:\\Users");
    std::size_t fields = 0;
    for (const std::string_view field : base::splitFields(text))
        fields += field.size() + 1;
    fuzz::require(fields >= text.size() && fields <= text.size() + 1, "fields make the line");
    return 0;
}
