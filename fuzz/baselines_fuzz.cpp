// The lists of baselines, the index of their files and the lines of reports, as they come out of their seals.
// The first byte says which of them is read and, for a report, how large its pages are.

#include <algorithm>
#include <string>

#include "base/hex_text.h"
#include "base/record_text.h"
#include "components/kinds.h"
#include "components/permission_record.h"
#include "crypto/md5.h"
#include "crypto/sealed_stream.h"
#include "fuzz_target.h"
#include "map_settings_store.h"
#include "memory_file_system.h"
#include "recording_sound.h"
#include "reports/report_file.h"
#include "reports/report_writer.h"
#include "scripted_user_interface.h"
#include "store/component_index.h"
#include "system_back_end.h"

namespace {

using namespace corvalence;

/// What all inputs have in common; the system behind it is never asked.
struct Machine {
    test::SystemBackEnd system;
    test::RecordingSound sound;
    test::ScriptedUserInterface ui;
    crypto::Session session{"open sesame"};
};

/// An installation of no more than the files that an input makes.
struct Installation {
    explicit Installation(Machine& from) : machine(from) {
        configuration.write(settings::key::kInstallDirectory, "/inst/");
        configuration.write(settings::key::kBackupFilesDirectory, "/inst/Backup Files/");
    }

    void seal(const std::string& path, std::string_view text, const crypto::ChainValue& chain) {
        test::MemoryFile file;
        crypto::SealWriter writer(file, machine.session.key, chain);
        writer.write(base::bytesOf(text));
        writer.finish();
        files.put(path, file.bytes);
    }

    Machine& machine;
    fuzz::MemoryFileSystem files;
    test::MapSettingsStore settings;
    platform::Platform platform{files,
                                machine.system.access,
                                machine.system.volumes,
                                machine.system.status,
                                machine.system.process,
                                machine.system.types,
                                machine.system.clock,
                                settings,
                                machine.sound,
                                machine.ui,
                                {}};
    settings::Configuration configuration{settings, machine.ui};
    crypto::WorkingFiles working{files, "journal"};
    store::Vault vault{platform, configuration, working, machine.session};
};

void readBaseline(Installation& installation, const components::ComponentKind& kind, std::string_view text) {
    components::BaselineFiles listed;
    for (const std::string& path : store::componentFiles(kind.kind, store::Form::Standalone, "/db")) {
        installation.seal(path, text, crypto::PathIV(path));
        const base::ByteView sealed = installation.files.entries.at(path).file->bytes;
        listed.push_back({path, base::hexText(crypto::Md5::of(sealed))});
    }
    const auto lines = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
    for (const components::Count& count : kind.countListed(installation.vault, listed))
        fuzz::require(count.count <= lines + base::kStaleTailLimit, "a record takes a line");
}

void readIndex(Installation& installation, std::string_view text) {
    store::ComponentIndex index(installation.vault);
    installation.seal(index.path(), text, installation.machine.session.chains.IndexIV);
    const auto records = index.records();
    for (const store::SealedFileRecord& record : records) {
        fuzz::require(!record.path.empty() && base::isHexText(record.digest), "a record has both fields");
        fuzz::require(index.find(record.path).has_value(), "a file is found by its path");
    }
    const std::string added = "/a new one";
    index.put({{added, std::string(32, 'a')}});
    const auto after = index.records();
    fuzz::require(after.back().path == added && after.size() <= records.size() + 1, "a new record is last");
}

void renderLine(const components::ComponentKind& kind, const reports::RecordRenderer& renderer,
                std::size_t number, std::string_view line) {
    const auto columns = renderer.columns(line);
    const auto rows = renderer.rows(line);
    fuzz::require(columns.has_value() == !rows.empty(), "a record has a row");
    fuzz::require(columns.has_value() == !renderer.fields(number, line).empty(), "a record has fields");
    fuzz::require(columns.has_value() == !renderer.text(number, line).empty(), "a record has a text");
    for (const auto& row : rows)
        fuzz::require(row.size() == reports::reportRow(kind.report).columns.size(),
                      "a row fills its columns");
    if (kind.kind != store::DatabaseKind::Permissions || !columns) return;
    const auto separators = static_cast<std::size_t>(std::count(line.begin(), line.end(), base::kSeparator));
    fuzz::require(components::permissionEntries(line).size() + 1 == separators, "every field is an entry");
}

void readReport(Installation& installation, const components::ComponentKind& kind, std::string_view text,
                std::size_t pageSize) {
    const std::string path = reports::reportPath(installation.configuration, kind.report);
    installation.seal(path, text, installation.machine.session.chains.IndexIV);
    const auto report = reports::ReportFile::open(installation.vault, path);
    const auto renderer = kind.makeRenderer(installation.platform.paths);
    for (std::size_t number = 0; number < report->lines().size(); ++number)
        renderLine(kind, *renderer, number, report->lines()[number]);
    const reports::ReportPages pages(*report, *renderer, pageSize);
    std::size_t shown = 0;
    for (std::size_t page = 1; page <= pages.count(); ++page) {
        const auto range = pages.range(page);
        fuzz::require(range.begin == shown && range.end - range.begin <= pageSize,
                      "pages follow one another");
        shown = range.end;
    }
    fuzz::require(shown == report->lines().size(), "every line is on a page");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    static Machine machine;
    Installation installation(machine);
    const std::string_view text = fuzz::textOf(data + 1, size - 1);
    const auto kinds = components::componentKinds();
    const std::size_t choice = *data % (2 * kinds.size() + 1);
    if (choice == 2 * kinds.size()) {
        readIndex(installation, text);
    } else if (choice < kinds.size()) {
        readBaseline(installation, kinds[choice], text);
    } else {
        readReport(installation, kinds[choice - kinds.size()], text, 1 + *data / 16U);
    }
    return 0;
}
