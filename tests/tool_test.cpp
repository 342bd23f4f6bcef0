#include <fcntl.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <regex>
#include <sstream>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "request/page_mapping.h"
#include "service/tv_service_page.h"
#include "tests/support/child.h"
#include "tests/support/test_root.h"

namespace {

constexpr std::chrono::seconds kPatience{60};

using Words = std::vector<std::string>;

// "\x1b" is that byte; "{a*300}" is 300 times "a", also over several rows, and each "(n)" in it is
// its number.
std::string Expand(std::string text) {
    static const std::regex kMark("\\{([^*]+)\\*([0-9]+)\\}|\\\\x([0-9a-f]{2})");
    static const std::regex kNumber("\\(n\\)");
    std::string expanded;
    for (std::smatch match; std::regex_search(text, match, kMark); text = match.suffix()) {
        expanded += match.prefix();
        if (match[3].matched) {
            expanded += static_cast<char>(std::stoi(match[3], nullptr, 16));
        }
        for (int n = 0; match[2].matched && n < std::stoi(match[2]); ++n) {
            expanded += Expand(std::regex_replace(match[1].str(), kNumber, std::to_string(n)));
        }
    }
    return expanded + text;
}

// "''" is an empty word.
Words SplitWords(const std::string& text) {
    std::istringstream stream(text);
    Words words{std::istream_iterator<std::string>(stream), {}};
    for (std::string& word : words) {
        word = word == "''" ? "" : Expand(word);
    }
    return words;
}

// What the tool prints, standard error's rows behind "! ", and its exit status; `serve` runs
// beside it.
std::string RunTool(
    const Words& words, const std::function<void()>& serve = [] {}) {
    Child tool("ko_cmd_tool", words, Child::Io::kErrorFile);
    serve();
    std::string transcript = tool.ReadRest();
    const int status = tool.Wait();
    std::istringstream errors(ReadFile("stderr"));
    for (std::string row; std::getline(errors, row);) {
        transcript += "! " + row + "\n";
    }
    return transcript + "exit " + std::to_string(WEXITSTATUS(status)) + "\n";
}

// The page of a service that the test plays itself, byte by byte.
class PlayedPage {
public:
    PlayedPage() {
        EXPECT_TRUE(TvServicePage().Open(kTestPage));
        m_mapping = PageMapping(UniqueFd(open(kTestPage, O_RDWR | O_CLOEXEC)).Get());
    }

    // Waits for a request and returns the page's used bytes, header first.
    std::string TakeRequest() const {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while ((LoadHeader(*m_mapping.Get()).flags & kRequestPosted) == 0) {
            if (std::chrono::steady_clock::now() >= end) {
                ADD_FAILURE() << "no request came";
                return {};
            }
            std::this_thread::yield();
        }
        return ReadFile(kTestPage).substr(0, kHeaderSize + LoadHeader(*m_mapping.Get()).length);
    }

    void Reply(const std::string& bytes, std::size_t length) const {
        std::memcpy(m_mapping.Get()->data, bytes.data(), bytes.size());
        StoreHeader(*m_mapping.Get(), kReplyReady, length);
    }

private:
    PageMapping m_mapping;
};

std::vector<std::filesystem::path> CaseFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(SourcePath("tests/check"))) {
        files.push_back(entry.path());
    }
    return files;
}

class ToolCase : public testing::TestWithParam<std::filesystem::path> {};

// One section of a case, begun by a row "--- TITLE": "service OPTIONS" and "stop" start and end the
// stand-in; "$ WORDS" runs the tool, with what it prints below; "reply LENGTH WORDS" does so and
// answers the request with the bytes in the last word, as a page of that length; "is FILE" gives
// the bytes of a file; any other title writes that file. A case without files has the example
// catalogue.
void PlaySection(const TestRoot& root, std::unique_ptr<Service>& service, const std::string& title,
                 const std::string& body) {
    const std::string kind = title.substr(0, title.find(' '));
    Words words = SplitWords(title.substr(std::min(kind.size() + 1, title.size())));
    if (kind == "$") {
        EXPECT_EQ(body, RunTool(words)) << title;
    } else if (kind == "reply") {
        const PlayedPage page;
        const Words call(words.begin() + 1, words.end() - 1);
        const std::size_t length = std::stoul(words.front());
        EXPECT_EQ(body, RunTool(call,
                                [&] {
                                    page.TakeRequest();
                                    page.Reply(words.back(), length);
                                }))
            << title;
    } else if (kind == "is") {
        EXPECT_EQ(Expand(body), ReadFile(words.front()));
    } else if (kind == "service" || kind == "stop") {
        service.reset();
        service = kind == "stop" ? nullptr : std::make_unique<Service>(words);
    } else {
        root.Write(title, Expand(body));
    }
}

}  // namespace

TEST_P(ToolCase, PrintsWhatItSays) {
    const ExampleRoot root;
    std::unique_ptr<Service> service;
    std::istringstream rows(ReadFile(GetParam()) + "--- stop\n--- stop\n");
    std::string title = "stop";
    std::string body;
    for (std::string row; std::getline(rows, row);) {
        if (row.rfind("--- ", 0) == 0) {
            PlaySection(root, service, title, body);
            title = row.substr(4);
            body.clear();
        } else {
            body += row + "\n";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, ToolCase, testing::ValuesIn(CaseFiles()),
                         [](const auto& file) { return file.param.stem().string(); });

// The rows of "encode" give the page, header last, that the console posts for the same words.
TEST(ToolEncode, ShowsTheBytesThatTheConsolePosts) {
    static const std::pair<std::string, std::string> kPrompts[] = {
        {"aud", "setvol 0 0x7f"},    {"tun", "setfreq 474000000 -8000"},
        {"aud", "tone 440.25 500"},  {"pic", "white 0.3127 3e-2"},
        {"hdmi", "cec 0x0 +4 36ä€"}, {"scan", "stop"},
    };
    static const std::regex kBytes("\n\\w+ +((?:[0-9a-f]{2}(?: |(?=\n)))+)");
    for (const auto& [module, line] : kPrompts) {
        const ExampleRoot root;
        const PlayedPage page;
        Child console("ko_cmd_debug", {}, Child::Io::kPipes);
        console.Type(module + "\n" + line + "\nq\nq\n");
        const std::string posted = page.TakeRequest();
        page.Reply(std::string(4, '\0'), 4);
        console.ReadRest();

        const std::string shown = RunTool(SplitWords("encode " + module + " " + line));
        std::string fields;
        std::string header;
        for (std::sregex_iterator row(shown.begin(), shown.end(), kBytes), end; row != end; ++row) {
            fields += header;
            header.clear();
            std::istringstream bytes((*row)[1]);
            for (int byte; bytes >> std::hex >> byte;) {
                header += static_cast<char>(byte);
            }
        }
        EXPECT_EQ(posted, header + fields) << shown;
    }
}

TEST(ToolCall, SeesThatThePageWasCut) {
    const ExampleRoot root;
    const PlayedPage page;
    EXPECT_EQ("! ko_cmd_tool: the page root/data/vendor/.tv cannot be read any more\nexit 6\n",
              RunTool({"call", "tun", "lock"}, [&] {
                  page.TakeRequest();
                  std::filesystem::resize_file(kTestPage, 0);
              }));
}
