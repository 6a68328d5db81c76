#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/file_failure.h"
#include "platform/access_lists.h"

namespace corvalence::test {

/// The machine's access lists, but for the files whose lists a test makes up or closes.
class ScriptedAccessLists : public platform::AccessLists {
  public:
    using List = std::optional<std::vector<platform::AccessEntry>>;

    explicit ScriptedAccessLists(platform::AccessLists& inner) : inner_(inner) {}

    std::map<std::string, List> lists;            // by path
    std::map<std::string, base::Cause> failures;  // by path

    List read(const std::string& path) override {
        if (const auto failure = failures.find(path); failure != failures.end())
            throw base::FileFailure(failure->second, 0, path);
        const auto list = lists.find(path);
        return list == lists.end() ? inner_.read(path) : list->second;
    }
    std::size_t removeEntries(const std::string& path,
                              const std::function<bool(const platform::AccessEntry&)>& isUnwanted) override {
        return inner_.removeEntries(path, isUnwanted);
    }

  private:
    platform::AccessLists& inner_;
};

}  // namespace corvalence::test
