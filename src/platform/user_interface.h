#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvalence::platform {

enum class Icon { Information, Warning, Stop };

/// What is being worked on.
struct WorkItem {
    enum class Kind { File, Other };

    std::string_view name;        // the path of a file, or how else it is called
    std::uint64_t remaining = 0;  // items that come behind it; 0 where nobody knows
    Kind kind = Kind::File;
    std::optional<std::uint64_t> size = std::nullopt;  // of a file, in bytes, where it is to be shown
};

/// A counter of work.
struct Count {
    std::string_view name;  // "files_added", for documents
    std::string_view text;  // " Files Added.", behind the number
    std::uint64_t count = 0;
};

/// Work that counts while it goes on.
class Counting {
  public:
    virtual ~Counting() = default;
    /// All counters in their order, as they stand.
    virtual std::vector<Count> counts() const = 0;
};

/// A modeless window (or a line on a terminal) that shows long work, or as much of it as it has room for. It
/// goes when the object goes.
class Progress {
  public:
    virtual ~Progress() = default;

    static constexpr std::uint32_t kSteps = 65000;

    /// Whether the user wants the work to stop. Costs next to nothing; asked at least once per block of work.
    /// A graphical front pumps its events here.
    virtual bool cancelled() = 0;
    /// Position of the bar, 0 to kSteps.
    virtual void bar(std::uint32_t /*position*/) {}
    /// The label of remaining bytes.
    virtual void label(const std::string& /*text*/) {}
    virtual void item(const WorkItem& /*item*/) {}
    /// The counters to be shown, read whenever the front draws; null before they go.
    virtual void watch(const Counting* /*counting*/) {}
};

/// Shows counters for as long as it lives.
class Watched {
  public:
    Watched(Progress& progress, const Counting& counting) : progress_(progress) {
        progress_.watch(&counting);
    }
    ~Watched() { progress_.watch(nullptr); }
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;

  private:
    Progress& progress_;
};

/// Hands everything on to another one: a base for those that change or notice a part of it.
class ForwardedProgress : public Progress {
  public:
    explicit ForwardedProgress(Progress& inner) : inner_(inner) {}

    bool cancelled() override { return inner_.cancelled(); }
    void bar(std::uint32_t position) override { inner_.bar(position); }
    void label(const std::string& text) override { inner_.label(text); }
    void item(const WorkItem& item) override { inner_.item(item); }
    void watch(const Counting* counting) override { inner_.watch(counting); }

  private:
    Progress& inner_;
};

/// How logic speaks to its user. Calls are synchronous.
class UserInterface {
  public:
    virtual ~UserInterface() = default;

    virtual void message(Icon icon, const std::string& text) = 0;
    /// A question with Yes and No. `unattended` is the answer where nobody can be asked.
    virtual bool ask(Icon icon, const std::string& text, bool unattended = false) = 0;
    virtual std::unique_ptr<Progress> openProgress(const std::string& title) = 0;
    /// Text of a status pane: 0 says what is going on, 1 the state of the database.
    virtual void status(int pane, const std::string& text) = 0;
};

}  // namespace corvalence::platform
