#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "tests/docs/page.h"
#include "tests/support/program.h"

using std::string;

namespace {

string block_of(const std::vector<page_block>& blocks, const string& label) {
    for (const page_block& block : blocks) {
        if (block.label == label) {
            return block.text();
        }
    }
    return "";
}

TEST(Pages, ShowWhatTheirProgramsWrite) {
    const string rig = page_path("docs/snippets/rig.txt");
    const struct {
        string page, arguments;
    } programs[] = {{"core", ""}, {"configuration", rig}, {"geometry", ""}, {"image", ""},
                    {"net", ""},  {"subtitle", ""}};
    for (const auto& [page, arguments] : programs) {
        SCOPED_TRACE(page);
        const std::vector<page_block> blocks = read_blocks("docs/" + page + ".md");
        const program_run done = run(string(SNIPPETS) + "/" + page + "_snippet", arguments);
        EXPECT_EQ(done.status, 0) << done.err;
        EXPECT_EQ(block_of(blocks, "output"), done.out);
        // On a busy machine the ports of the network's program may be taken, which it tells.
        if (page != "net") {
            EXPECT_TRUE(matches(block_of(blocks, "errors"), done.err)) << done.err;
        }
    }
}

// Links to other files of the tree. The pages are installed beside the README, so that those that go up lead there.
TEST(Pages, LinksLeadSomewhere) {
    int links = 0;
    std::vector<std::filesystem::path> pages = {page_path("README.md"), page_path("CONTRIBUTING.md")};
    for (const auto& entry : std::filesystem::directory_iterator(page_path("docs"))) {
        if (entry.path().extension() == ".md") {
            pages.push_back(entry.path());
        }
    }
    for (const std::filesystem::path& page : pages) {
        std::ifstream in(page);
        const string text(std::istreambuf_iterator<char>(in), {});
        for (std::size_t at = text.find("]("); at != string::npos; at = text.find("](", at + 2)) {
            const std::size_t end = text.find(')', at);
            ASSERT_NE(end, string::npos) << page;
            string target = text.substr(at + 2, end - at - 2);
            target.resize(std::min(target.find('#'), target.size()));
            if (!target.empty() && target.find("://") == string::npos) {
                ++links;
                EXPECT_TRUE(std::filesystem::exists(page.parent_path() / target))
                    << page << " links to " << target;
            }
        }
    }
    EXPECT_GT(links, 20);
}

}  // namespace
