#include "faulty_file_system.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace corvalence::test {

using platform::File;
using platform::FileStatus;

class FaultyFile : public File {
  public:
    FaultyFile(std::unique_ptr<File> inner, FaultPlan& plan) : inner_(std::move(inner)), plan_(plan) {}

    std::size_t read(base::ByteSpan buffer) override {
        plan_.read(inner_->path(), position_);
        const std::size_t count = inner_->read(buffer);
        position_ += count;
        return count;
    }
    void write(base::ByteView bytes) override {
        const FaultPlan::Mishap mishap = plan_.next(FaultPlan::Needs::Room);
        const bool isWhole = mishap == FaultPlan::Mishap::None;
        inner_->write(isWhole ? bytes : bytes.first(bytes.size() / 2));
        position_ += bytes.size();
        if (mishap == FaultPlan::Mishap::End) FaultPlan::endProcess();
        if (!isWhole) plan_.fail(inner_->path());
    }
    void seek(std::uint64_t position) override {
        inner_->seek(position);
        position_ = position;
    }
    std::uint64_t size() override { return inner_->size(); }
    void resize(std::uint64_t size) override {
        plan_.pass(FaultPlan::Needs::Room, inner_->path());
        inner_->resize(size);
    }
    void flush() override {
        plan_.pass(FaultPlan::Needs::Nothing, inner_->path());
        inner_->flush();
    }
    FileStatus status() override { return inner_->status(); }
    const std::string& path() const noexcept override { return inner_->path(); }

    File& inner() noexcept { return *inner_; }

  private:
    std::unique_ptr<File> inner_;
    FaultPlan& plan_;
    std::uint64_t position_ = 0;
};

namespace {

/// The back end knows only the files that it opened itself.
File& innermost(File& file) {
    auto* const faulty = dynamic_cast<FaultyFile*>(&file);
    return faulty == nullptr ? file : innermost(faulty->inner());
}

}  // namespace

void FaultPlan::reset(Mishap mishap, std::uint64_t number) {
    mishap_ = mishap;
    number_ = number;
    operations_ = 0;
    hasStruck_ = false;
}

void FaultPlan::failAt(std::uint64_t number, base::Cause cause, Lasts lasts) {
    reset(Mishap::Failure, number);
    cause_ = cause;
    lasts_ = lasts;
}

void FaultPlan::endProcessAt(std::uint64_t number) {
    reset(Mishap::End, number);
}

void FaultPlan::failReads(std::string ending, std::uint64_t offset) {
    badEnding_ = std::move(ending);
    badOffset_ = offset;
}

void FaultPlan::clear() {
    reset(Mishap::None, 0);
    badEnding_.reset();
}

FaultPlan::Mishap FaultPlan::next(Needs needs) {
    ++operations_;
    if (mishap_ == Mishap::None) return Mishap::None;
    const bool strikes = operations_ == number_;
    const bool lingers = hasStruck_ && lasts_ == Lasts::FromThere && needs == Needs::Room;
    if (strikes) hasStruck_ = true;
    return strikes || lingers ? mishap_ : Mishap::None;
}

void FaultPlan::pass(Needs needs, const std::string& path) {
    const Mishap mishap = next(needs);
    if (mishap == Mishap::End) endProcess();
    if (mishap == Mishap::Failure) fail(path);
}

void FaultPlan::fail(const std::string& path) const {
    throw base::FileFailure(cause_, 0, path);
}

void FaultPlan::endProcess() {
    std::_Exit(kEndedExitCode);
}

void FaultPlan::read(const std::string& path, std::uint64_t position) const {
    const bool isMeant = badEnding_ && path.size() >= badEnding_->size() &&
                         path.compare(path.size() - badEnding_->size(), std::string::npos, *badEnding_) == 0;
    if (isMeant && position >= badOffset_) throw base::FileFailure(base::Cause::Generic, 0, path);
}

std::unique_ptr<File> FaultyFileSystem::openShared(const std::string& path) {
    return std::make_unique<FaultyFile>(inner_.openShared(path), plan_);
}

std::unique_ptr<File> FaultyFileSystem::openExclusive(const std::string& path) {
    return std::make_unique<FaultyFile>(inner_.openExclusive(path), plan_);
}

std::unique_ptr<File> FaultyFileSystem::createNew(const std::string& path) {
    plan_.pass(FaultPlan::Needs::Room, path);
    return std::make_unique<FaultyFile>(inner_.createNew(path), plan_);
}

std::optional<FileStatus> FaultyFileSystem::status(const std::string& path, platform::Follow follow) {
    return inner_.status(path, follow);
}

std::vector<platform::FolderEntry> FaultyFileSystem::list(const std::string& folder,
                                                          platform::Detail detail) {
    return inner_.list(folder, detail);
}

void FaultyFileSystem::rename(const std::string& from, const std::string& to) {
    plan_.pass(FaultPlan::Needs::Nothing, from);
    inner_.rename(from, to);
}

bool FaultyFileSystem::renameNew(const std::string& from, const std::string& to) {
    plan_.pass(FaultPlan::Needs::Nothing, from);
    return inner_.renameNew(from, to);
}

bool FaultyFileSystem::linkNew(const std::string& from, const std::string& to) {
    plan_.pass(FaultPlan::Needs::Nothing, from);
    return inner_.linkNew(from, to);
}

void FaultyFileSystem::remove(const std::string& path) {
    plan_.pass(FaultPlan::Needs::Nothing, path);
    inner_.remove(path);
}

void FaultyFileSystem::createFolder(const std::string& path) {
    plan_.pass(FaultPlan::Needs::Room, path);
    inner_.createFolder(path);
}

std::size_t FaultyFileSystem::nameLimit() const noexcept {
    return inner_.nameLimit();
}

bool FaultyFileSystem::isNameTaken(const base::FileFailure& failure) const noexcept {
    return inner_.isNameTaken(failure);
}

bool FaultyFileSystem::isOtherVolume(const base::FileFailure& failure) const noexcept {
    return inner_.isOtherVolume(failure);
}

void FaultyAccessControl::copyProtection(const std::string& from, File& to) {
    plan_.pass(FaultPlan::Needs::Nothing, to.path());
    inner_.copyProtection(from, innermost(to));
}

void FaultyAccessControl::setAttributes(File& file, std::uint32_t attributes) {
    plan_.pass(FaultPlan::Needs::Nothing, file.path());
    inner_.setAttributes(innermost(file), attributes);
}

std::unique_ptr<platform::PinnedFolder> FaultyAccessControl::pinFolderOf(const std::string& file,
                                                                         std::string& name) {
    return inner_.pinFolderOf(file, name);
}

}  // namespace corvalence::test
