#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QTextDocument>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace corvalence::gui {
namespace {

const std::set<std::string> kTopics = {"index",
                                       "passwordscreen",
                                       "modes",
                                       "createdatabase",
                                       "opendatabase",
                                       "databasedetails",
                                       "addall",
                                       "addabilities",
                                       "addattributes",
                                       "addcombo",
                                       "addcontents",
                                       "addlocation",
                                       "addsize",
                                       "addspecific",
                                       "addtime",
                                       "addtype",
                                       "removefiles",
                                       "changedfile",
                                       "filerestore",
                                       "fileanalysis",
                                       "checksummary",
                                       "passwordchange",
                                       "completesystem",
                                       "scanselection",
                                       "reports",
                                       "schedule",
                                       "singleschedule",
                                       "log",
                                       "differentpassword",
                                       "background",
                                       "configbackup",
                                       "configaudio",
                                       "configbackground",
                                       "configpagesize",
                                       "configinterface",
                                       "configemail",
                                       "folderpermissions",
                                       "permissionschanged",
                                       "applicationcheck",
                                       "helpcheck"};

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> matches(const std::string& text, const char* expression) {
    std::set<std::string> found;
    auto match = QRegularExpression(QLatin1String(expression)).globalMatch(QString::fromStdString(text));
    while (match.hasNext())
        found.insert(match.next().captured(1).toStdString());
    return found;
}

class HelpPages : public testing::Test {
  protected:
    HelpPages() {
        for (const auto& entry : std::filesystem::directory_iterator(CORVALENCE_HELP)) {
            if (entry.path().extension() == ".html")
                pages_[entry.path().stem().string()] = textOf(entry.path());
        }
    }

    std::map<std::string, std::string> pages_;
};

TEST_F(HelpPages, AreThereForEveryTopicAndAllInTheHelpFile) {
    std::set<std::string> names;
    for (const auto& [name, text] : pages_)
        names.insert(name);
    EXPECT_EQ(names, kTopics);
    EXPECT_EQ(
        matches(textOf(std::filesystem::path(CORVALENCE_HELP) / "help.qrc"), "<file>(.*)\\.html</file>"),
        kTopics);
}

TEST_F(HelpPages, LeadSomewhereWithEveryLinkAndCanBeReachedFromTheContents) {
    std::set<std::string> reached = {"index"};
    for (const auto& [name, text] : pages_) {
        for (const std::string& target : matches(text, "href=\"([^\"]*)\"")) {
            ASSERT_TRUE(target.ends_with(".html")) << name << ": " << target;
            const std::string topic = target.substr(0, target.size() - 5);
            EXPECT_TRUE(pages_.contains(topic)) << name << ": " << target;
            if (name == "index") reached.insert(topic);
        }
        if (name != "index") {
            EXPECT_THAT(text, testing::HasSubstr("<a href=\"index.html\">"));
        }
    }
    EXPECT_EQ(reached, kTopics);
}

TEST_F(HelpPages, AreShownWithTitleAndEveryWord) {
    for (const auto& [name, text] : pages_) {
        const QString page = QString::fromStdString(text);
        for (const char* tag : {"p", "ul", "ol", "li", "table", "tr", "td", "b", "h1", "h2", "a"}) {
            const QString word = QLatin1String(tag);
            EXPECT_EQ(page.count(QRegularExpression("<" + word + "[ >]")), page.count("</" + word + ">"))
                << name << ": " << tag;
        }
        QTextDocument document;
        document.setHtml(page);
        EXPECT_FALSE(document.metaInformation(QTextDocument::DocumentTitle).isEmpty()) << name;
        EXPECT_GT(document.toPlainText().size(), 200) << name;
    }
}

}  // namespace
}  // namespace corvalence::gui
