#pragma once

#include <memory>
#include <optional>
#include <string>

#include "crypto/seal_appender.h"
#include "crypto/secret_text.h"
#include "schedule/log_block.h"
#include "store/vault.h"

namespace corvalence::schedule {

enum class LogKind { Master, Session };

/// The two sealed logs: that of the session in progress, and the one that collects sessions. Nothing of them
/// is ever written in plain. All calls throw base::FileFailure.
class LogFiles {
  public:
    explicit LogFiles(store::Vault& vault) : vault_(vault) {}

    std::string path(LogKind kind) const;

    // The end of a session: each leaves the session log empty. Both logs change together, so that a crash
    // leaves all as it was or all done, and nothing is in the log twice.

    /// The session goes to the end of the master log. What the session log does not hold in whole blocks is
    /// left out.
    void appendSession();
    /// The session takes the place of the master log. False, and the log is as it was, where nothing was
    /// logged in it.
    bool overwriteMaster();

    /// Empties a log.
    void empty(LogKind kind);

    /// Why a log cannot be exported to `destination`: it is one of the installation's own places, or holds
    /// its settings. Nothing where it can; what stands there is then replaced.
    std::optional<std::string> findExportFault(const std::string& destination) const;
    /// Copies the sealed log, as it is.
    void exportLog(LogKind kind, const std::string& destination);

  private:
    bool isEmpty(LogKind kind) const;
    crypto::TemporaryFile copyBeside(LogKind source, LogKind target);
    void commit(crypto::TemporaryFile master);

    store::Vault& vault_;
};

/// Where the worker of a check writes its block: to the end of the session log, sealed as it goes, and, where
/// it is to be mailed, to a text in memory.
///
/// The log is written in place, so that a log of any size takes a block in the time that the block takes; a
/// check that is ended by force leaves what it had told. A failure of the log, as on a full disk, ends the
/// writing to it but not the check: failure() tells, and the next block goes on behind what was written.
class LogPair : public LogSink {
  public:
    /// Opens the session log, or makes it; never throws for the log itself.
    LogPair(store::Vault& vault, bool keepsText);
    ~LogPair() override;

    void write(std::string_view text) override;
    /// Brings what was written to the device. Nothing can be written afterwards.
    void close();

    /// Why the log does not hold the whole block; nothing while it does.
    const std::optional<std::string>& failure() const noexcept { return failure_; }
    /// The text of this check so far, lines ended by CR LF; empty where it is not kept.
    std::string_view text() const noexcept { return text_.view(); }

  private:
    template <typename Step>
    void guarded(Step&& step);

    bool keepsText_;
    crypto::SecretText text_;
    std::unique_ptr<platform::File> file_;
    std::optional<crypto::SealAppender> log_;  // while it can be written
    std::optional<std::string> failure_;
};

}  // namespace corvalence::schedule
