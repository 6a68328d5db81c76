#include "reports/report_writer.h"

#include "base/record_text.h"
#include "crypto/sealed_file.h"

namespace corvalence::reports {

namespace {
constexpr std::string_view kSealedSuffix = "123456789z";
}  // namespace

std::string reportPath(const settings::Configuration& configuration, ReportKind kind) {
    return configuration.folder(settings::key::kInstallDirectory)
        .append(reportRow(kind).fileName)
        .append(kSealedSuffix);
}

void removeReport(const store::Vault& vault, ReportKind kind) {
    const std::string path = reportPath(vault.configuration, kind);
    if (vault.platform.files.status(path, platform::Follow::No)) vault.platform.files.remove(path);
}

void removeReports(const store::Vault& vault) {
    for (const ReportKind kind : kRemovalOrder)
        removeReport(vault, kind);
}

ReportWriter::ReportWriter(store::Vault& vault, ReportKind kind)
    : path_(reportPath(vault.configuration, kind)),
      file_(vault.working.createSealed(path_, crypto::kSealedBesideSuffix)),
      writer_(file_.file(), vault.session.key, vault.session.chains.IndexIV) {}

void ReportSink::add(std::initializer_list<std::string_view> fields) {
    std::string line;
    for (const std::string_view field : fields)
        base::appendField(line, field);
    addLine(line);
}

void ReportWriter::addLine(std::string_view line) {
    writer_.write(base::bytesOf(line));
    writer_.write(base::bytesOf("\r\n"));
}

void ReportWriter::keep() {
    writer_.finish();
    file_.keepAs(path_);
}

}  // namespace corvalence::reports
