#include <fcntl.h>

#include <chrono>
#include <filesystem>
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

// "\x1b" is that byte.
std::string Unescape(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.compare(i, 2, "\\x") == 0) {
            bytes += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

// "{a*300}" is 300 times "a", also over several rows; each "(n)" in it is its number.
std::string Expand(const std::string& text) {
    static const std::regex kRepeat("\\{([^*]+)\\*([0-9]+)\\}");
    std::string expanded;
    std::smatch match;
    for (std::string rest = text;; rest = match.suffix()) {
        if (!std::regex_search(rest, match, kRepeat)) {
            return expanded + Unescape(rest);
        }
        expanded += Unescape(match.prefix());
        for (int n = 0; n < std::stoi(match[2]); ++n) {
            const std::string piece =
                std::regex_replace(match[1].str(), std::regex("\\(n\\)"), std::to_string(n));
            expanded += Unescape(piece);
        }
    }
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

// What the tool prints, standard error's rows behind "! ", and its exit status.
std::string Transcript(Child& tool) {
    std::string transcript = tool.ReadRest();
    const int status = tool.Wait();
    std::istringstream errors(ReadFile("stderr"));
    for (std::string row; std::getline(errors, row);) {
        transcript += "! " + row + "\n";
    }
    return transcript + "exit " + std::to_string(WEXITSTATUS(status)) + "\n";
}

std::string RunTool(const Words& words) {
    Child tool("ko_cmd_tool", words, Child::Io::kErrorFile);
    return Transcript(tool);
}

// The page of a service that the test plays itself, byte by byte.
class PlayedPage {
public:
    PlayedPage() {
        EXPECT_TRUE(TvServicePage().Open(kTestPage));
        const UniqueFd file(open(kTestPage, O_RDWR | O_CLOEXEC));
        m_mapping = PageMapping(file.Get());
    }

    SharePage& Page() const { return *m_mapping.Get(); }

    // Waits for a request and returns the whole page's used bytes, header first.
    std::string TakeRequest() const {
        const auto end = std::chrono::steady_clock::now() + kPatience;
        while ((LoadHeader(Page()).flags & kRequestPosted) == 0) {
            if (std::chrono::steady_clock::now() >= end) {
                ADD_FAILURE() << "no request came";
                return {};
            }
            std::this_thread::yield();
        }
        const char* bytes = reinterpret_cast<const char*>(&Page());
        return {bytes, kHeaderSize + LoadHeader(Page()).length};
    }

    void Reply(const std::string& bytes, std::size_t length) const {
        std::memcpy(Page().data, bytes.data(), bytes.size());
        StoreHeader(Page(), kReplyReady, length);
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

// One section of a case, begun by a row "--- TITLE": "mods.conf" and "cmds.conf" write a file;
// "service OPTIONS" and "stop" start and end the stand-in; "$ WORDS" runs the tool, with what it
// prints below. A case without files has the example catalogue.
void PlaySection(const TestRoot& root, std::unique_ptr<Service>& service, const std::string& title,
                 const std::string& body) {
    if (title.rfind("$ ", 0) == 0) {
        EXPECT_EQ(body, RunTool(SplitWords(title.substr(2)))) << title;
    } else if (title.rfind("service", 0) == 0) {
        service.reset();
        service = std::make_unique<Service>(SplitWords(title.substr(7)));
    } else if (title == "stop") {
        service.reset();
    } else {
        root.Write(title, Expand(body));
    }
}

}  // namespace

TEST_P(ToolCase, PrintsWhatItSays) {
    const ExampleRoot root;
    std::unique_ptr<Service> service;
    std::istringstream rows(ReadFile(GetParam()));
    std::string title;
    std::string body;
    for (std::string row; std::getline(rows, row);) {
        if (row.rfind("--- ", 0) != 0) {
            body += row + "\n";
            continue;
        }
        if (!title.empty()) {
            PlaySection(root, service, title, body);
        }
        title = row.substr(4);
        body.clear();
    }
    PlaySection(root, service, title, body);
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
            std::istringstream bytes((*row)[1]);
            fields += header;
            header.clear();
            for (int byte; bytes >> std::hex >> byte;) {
                header += static_cast<char>(byte);
            }
        }
        EXPECT_EQ(posted, header + fields) << shown;
    }
}

// Replies that no healthy service sends, to a command with the print format "df".
TEST(ToolCall, JudgesEveryReply) {
    struct Case {
        const char* bytes;   // as Unescape takes them
        std::size_t length;  // in the header
        const char* transcript;
    };
    const char* const kOk = "\\x00\\x00\\x00\\x00";
    static const std::string kTwo = std::string(kOk) + "\\x05\\x00\\x00\\x00\\x00\\x00\\xc0\\x7f" +
                                    "\\xff\\xff\\xff\\xff\\x00\\x00\\x80\\xff";
    static const std::string kMisfit =
        "! ko_cmd_tool: the reply is no whole number of records of the print format \"df\": ";
    const std::vector<Case> cases = {
        {kOk, 4, "exit 0\n"},
        {kTwo.c_str(), 20,
         "{\"band\":5,\"gain dB\":null}\n{\"band\":-1,\"gain dB\":null}\nexit 0\n"},
        {"", 0, "! ko_cmd_tool: the reply is too short for a status: \nexit 6\n"},
        {"ab", 2, "! ko_cmd_tool: the reply is too short for a status: 61 62\nexit 6\n"},
        {kOk, 4089,
         "! ko_cmd_tool: the page root/data/vendor/.tv holds a reply longer than itself\nexit 6\n"},
        {kOk, 0xFFFFFFFF,
         "! ko_cmd_tool: the page root/data/vendor/.tv holds a reply longer than itself\nexit 6\n"},
        {kTwo.c_str(), 16, "00 00 00 00 05 00 00 00 00 00 c0 7f ff ff ff ff\nexit 6\n"},
        {kTwo.c_str(), 14, "00 00 00 00 05 00 00 00 00 00 c0 7f ff ff\nexit 6\n"},
        {"\\xfe\\xff\\xff\\xff", 4,
         "! ko_cmd_tool: the service refused: status -2 (0xfffffffe)\nexit 5\n"},
    };
    const ExampleRoot root;
    const PlayedPage page;
    for (const Case& reply : cases) {
        StoreHeader(page.Page(), 0, 0);
        Child tool("ko_cmd_tool", {"call", "--json", "aud", "eq", "3", "-1.5"},
                   Child::Io::kErrorFile);
        page.TakeRequest();
        page.Reply(Unescape(reply.bytes), reply.length);
        const bool misfit = *reply.transcript == '0';
        EXPECT_EQ((misfit ? kMisfit : "") + reply.transcript, Transcript(tool));
    }
}

// A command without a print format has no records to find in what stands behind the status.
TEST(ToolCall, WantsNoValuesWithoutAPrintFormat) {
    const ExampleRoot root;
    const PlayedPage page;
    Child tool("ko_cmd_tool", {"call", "scan", "stop"}, Child::Io::kErrorFile);
    page.TakeRequest();
    page.Reply(std::string(8, '\0'), 8);
    EXPECT_EQ(
        "! ko_cmd_tool: the reply is no whole number of records of the print format \"\": 00 00 00 "
        "00 00 00 00 00\nexit 6\n",
        Transcript(tool));
}

TEST(ToolCall, NeedsAWholePage) {
    const std::string kPage = "! ko_cmd_tool: the page root/data/vendor/.tv ";
    const ExampleRoot root;
    root.Write(kTestPage, std::string(kPageSize - 1, '\0'));
    EXPECT_EQ(kPage + "has less than 4096 bytes or cannot be read\nexit 6\n",
              RunTool({"call", "tun", "lock"}));
    EXPECT_EQ(std::string(kPageSize - 1, '\0'), ReadFile(kTestPage));

    std::filesystem::remove(kTestPage);
    EXPECT_EQ(kPage + "cannot be used: No such file or directory\nexit 6\n",
              RunTool({"call", "tun", "lock"}));
    EXPECT_FALSE(std::filesystem::exists(kTestPage));

    const PlayedPage page;
    Child tool("ko_cmd_tool", {"call", "tun", "lock"}, Child::Io::kErrorFile);
    page.TakeRequest();
    std::filesystem::resize_file(kTestPage, 0);
    EXPECT_EQ(kPage + "cannot be read any more\nexit 6\n", Transcript(tool));
}

// The reply of an earlier exchange is overwritten; a request that waits is not.
TEST(ToolCall, PostsOverARequestOnlyWhenForced) {
    const ExampleRoot root;
    const PlayedPage page;
    StoreHeader(page.Page(), kRequestPosted, 77);
    EXPECT_EQ(
        "! ko_cmd_tool: the page root/data/vendor/.tv holds somebody else's unanswered request; "
        "--force posts over it\nexit 6\n",
        RunTool({"call", "tun", "lock"}));
    EXPECT_EQ(77U, LoadHeader(page.Page()).length);

    for (const Words& words : {Words{"call", "--force", "--timeout", "30", "tun", "lock"},
                               Words{"call", "--timeout", "30", "tun", "lock"}}) {
        const bool forced = words[1] == "--force";
        EXPECT_EQ(std::string(forced ? "! ko_cmd_tool: the page root/data/vendor/.tv held somebody "
                                       "else's unanswered request\n"
                                     : "") +
                      "! ko_cmd_tool: no answer within 30 ms; the request stays in the page\n"
                      "exit 4\n",
                  RunTool(words));
        EXPECT_EQ(4U, LoadHeader(page.Page()).length);
        StoreHeader(page.Page(), kRequestPosted | kReplyReady, 77);
    }
}
