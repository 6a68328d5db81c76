#include "files/record_list.h"

#include <gtest/gtest.h>

#include "failure_of.h"
#include "files/database_copy.h"
#include "stale_tail.h"
#include "store/database_saving.h"
#include "world.h"

namespace corvalence::test {
namespace {

using files::RecordList;

/// A world whose database lists as many records as a test wants.
class Listing : public testing::Test, public World {
  protected:
    Listing() {
        create();
        open();
    }
    void list(const std::vector<std::string>& lines) {
        store::saveDatabase(vault(), context(), [&](crypto::SealWriter& writer) {
            for (const std::string& line : lines)
                writer.write(base::bytesOf(line));
        });
        open();
    }
    static files::FileRecord record(std::size_t number, std::size_t length = 0) {
        const std::string name = "/folder/" + std::string(length, 'x') + std::to_string(number);
        platform::FileStatus status;
        status.size = number;
        return files::FileRecord::of(name, std::string(64, 'a'), status);
    }
    static std::vector<std::string> lines(std::size_t count) {
        std::vector<std::string> lines;
        for (std::size_t number = 0; number < count; ++number)
            lines.push_back(record(number, number % 40).render());
        return lines;
    }
};

TEST_F(Listing, ShowsEveryRecordOnOnePage) {
    struct Case {
        std::size_t records, pageSize, pages, lastRows;
    };
    // The fourth is longer than what is read at once.
    for (const Case& each : {Case{0, 5, 1, 0}, Case{5, 5, 1, 5}, Case{6, 5, 2, 1}, Case{7000, 999, 8, 7}}) {
        list(lines(each.records));
        RecordList records(vault(), context(), each.pageSize);
        EXPECT_EQ(records.count(), each.records);
        EXPECT_EQ(records.totalSize(), each.records * (each.records - (each.records > 0)) / 2);
        ASSERT_EQ(records.pages(), each.pages);
        for (std::size_t page = each.pages; page > 0; --page) {
            records.show(page);
            ASSERT_EQ(records.rows(), page == each.pages ? each.lastRows : each.pageSize);
            for (std::size_t row = 0; row < records.rows(); ++row) {
                const std::size_t number = (page - 1) * each.pageSize + row;
                ASSERT_EQ(records.record(row)->path, record(number, number % 40).path);
                ASSERT_EQ(records.key(row), record(number, number % 40).path + "\x7F" + std::string(64, 'a'));
            }
        }
        records.show(99);
        EXPECT_EQ(records.page(), each.pages);
    }
    EXPECT_TRUE(leftovers("/folder/").empty());
}

TEST_F(Listing, LeavesOutWhatTheLastBlockLeftBehindAndNoDamage) {
    const std::string first = record(1).render();
    const std::string text =
        textWithStaleTail(vault().session.key, crypto::PathIV(context().path()), [&](int number) {
            const std::string line = record(static_cast<std::size_t>(number) + 10).render();
            return first +
                   record(static_cast<std::size_t>(number) + 10, paddingToOneByte(first.size() + line.size()))
                       .render();
        });
    list({text});
    for (const std::size_t pageSize : {1U, 2U, 5U}) {
        RecordList records(vault(), context(), pageSize);
        EXPECT_EQ(records.count(), 2U);
        EXPECT_EQ(records.pages(), pageSize == 1 ? 2U : 1U);
        records.show(9);
        EXPECT_EQ(records.rows(), pageSize == 1 ? 1U : 2U);
    }
    list({first, "short\r\n", "/a line that is \x7Fno record\r\n"});
    RecordList records(vault(), context(), 10);
    records.show(1);
    ASSERT_EQ(records.rows(), 3U);
    EXPECT_FALSE(records.record(2));
    EXPECT_EQ(records.line(2), "/a line that is \x7Fno record");
}

TEST_F(Listing, RefusesAFileThatIsNotTheOneInTheIndex) {
    list(lines(50));
    RecordList records(vault(), context(), 10);
    records.show(2);
    std::string bytes = readWholeFile(context().path());
    writeWholeFile(context().path(), bytes.substr(16));
    EXPECT_THROW(records.show(1), files::DatabaseChanged);
    EXPECT_EQ(records.page(), 2U);
    EXPECT_EQ(records.record(0)->path, record(10, 10).path);
    bytes[100] = static_cast<char>(bytes[100] + 1);
    writeWholeFile(context().path(), bytes);
    EXPECT_THROW(RecordList(vault(), context(), 10), files::DatabaseChanged);
    std::filesystem::remove(context().path());
    EXPECT_TRUE(failureOf([&] { RecordList(vault(), context(), 10); }));
}

}  // namespace
}  // namespace corvalence::test
