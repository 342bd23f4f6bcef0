#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>
#include <optional>
#include <regex>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/child.h"
#include "tests/support/log_daemon.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

// For the shell: the programs, and the service in the background once it serves.
constexpr char kPrograms[] = "KO='" KO_EMULATOR " " KO_BIN_DIR
                             "/ko_cmd_debug'; "
                             "TOOL='" KO_EMULATOR " " KO_BIN_DIR
                             "/ko_cmd_tool'; "
                             "SERVICE='" KO_EMULATOR " " KO_BIN_DIR
                             "/ko_tv_service'; "
                             "EXAMPLE='" KO_EMULATOR " " KO_EXAMPLE
                             "'; "
                             "CALLS=" KO_CALLS "; "
                             "SCRIPTS='" KO_SOURCE_DIR
                             "/script'; "
                             "serve() { : >service.log; $SERVICE \"$@\" >>service.log 2>&1 & "
                             "until grep -q serving service.log; do sleep 0.01; done; }\n";

// "\r", "\t", "\b" and "\x1b" are those bytes, a backslash at the end of a row takes the line end
// away; "{a*300}" is 300 times "a", also over several rows, and each "(n)" in it is its number.
std::string Expand(std::string text) {
    static const std::regex kMark(R"(\{([^*]+)\*([0-9]+)\}|\\(x[0-9a-f]{2}|[rtb\n]))");
    static const std::regex kNumber("\\(n\\)");
    std::string expanded;
    for (std::smatch match; std::regex_search(text, match, kMark); text = match.suffix()) {
        expanded += match.prefix();
        const std::string escape = match[3];  // empty for a repetition
        if (escape.size() == 3) {
            expanded += static_cast<char>(std::stoi(escape.substr(1), nullptr, 16));
        } else if (!escape.empty() && escape != "\n") {
            expanded += "\r\t\b"[std::string_view("rtb").find(escape)];
        }
        for (int n = 0; match[2].matched && n < std::stoi(match[2]); ++n) {
            expanded += Expand(std::regex_replace(match[1].str(), kNumber, std::to_string(n)));
        }
    }
    return expanded + text;
}

Words SplitWords(const std::string& text) {
    std::istringstream stream(text);
    Words words{std::istream_iterator<std::string>(stream), {}};
    std::transform(words.begin(), words.end(), words.begin(), Expand);
    return words;
}

// Each file of tests/cases is played on a television of its own. A row "--- TITLE" begins a
// section:
//   install PATH         puts a catalogue file of the source tree, or a folder's two, in place
//   folder PATH          makes a folder
//   service OPTIONS      starts the stand-in service; "stop" ends it
//   reply LENGTH BYTES REMARK  answers a request of the next program with the bytes, as a reply of
//                        that length, true or not; several answer in turn
//   keys                 runs the console; the body is typed
//   shell                runs the body with the programs as $KO, $SERVICE and $TOOL and the source
//                        tree's script folder as $SCRIPTS; "serve" starts the stand-in as $!, with
//                        its output in service.log
//   output               what either printed, then standard error's rows behind "! "
//   logd                 plays the log daemon to the programs behind it
//   log                  what they have logged since; "*" stands for the number of a source line
//   $ WORDS              runs the tool; the body is what it prints, without marks
//   posted MODULE LINE   the page that the console posts for the line
//   is FILE              what a file holds
// A title with a dot is a file to write. Words, keys, outputs and files may have the marks of
// Expand.
class Case {
public:
    void Play(const std::string& title, const std::string& body);

private:
    std::string Run(const std::string& program, const Words& words, const std::string& input);
    std::string Logged(bool anyLine) const;

    TestRoot m_root;
    std::unique_ptr<Service> m_service;
    std::optional<PlayedPage> m_page;
    std::optional<LogDaemon> m_log;
    std::vector<Words> m_replies;
    std::string m_printed;
};

std::string Case::Run(const std::string& program, const Words& words, const std::string& input) {
    Child child(program, words, Child::Io::kErrorFile);
    child.Type(input);
    child.CloseInput();
    for (const Words& reply : std::exchange(m_replies, {})) {
        m_page->TakeRequest();
        m_page->Reply(reply[1], std::stoul(reply[0]));
    }
    std::string printed = child.ReadRest();
    const int status = child.Wait();
    std::istringstream errors(ReadFile("stderr"));
    for (std::string row; std::getline(errors, row);) {
        printed += "! " + row + "\n";
    }
    const int exit = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return printed + "exit " + std::to_string(exit) + "\n";
}

std::string Case::Logged(bool anyLine) const {
    const std::string rows = m_log->TakeRows();
    return anyLine ? std::regex_replace(rows, std::regex(":[0-9]+\\]"), ":*]") : rows;
}

void Case::Play(const std::string& title, const std::string& body) {
    const std::string kind = title.substr(0, title.find(' '));
    std::string rest = title.substr(std::min(kind.size() + 1, title.size()));
    if (kind == "install") {
        TestRoot::Install(rest);
    } else if (kind == "folder") {
        fs::create_directories(rest);
    } else if (kind == "service" || kind == "stop") {
        m_service.reset();
        m_service = kind == "stop" ? nullptr : std::make_unique<Service>(SplitWords(rest));
    } else if (kind == "reply") {
        m_page.emplace();
        m_replies.push_back(SplitWords(rest));
    } else if (kind == "keys") {
        m_printed = Run("ko_cmd_debug", {}, Expand(body));
    } else if (kind == "shell") {
        m_printed = Run("/bin/sh", {"-c", kPrograms + body}, "");
    } else if (kind == "output") {
        EXPECT_EQ(Expand(body), m_printed);
    } else if (kind == "logd") {
        m_log.emplace();
    } else if (kind == "log") {
        EXPECT_EQ(body, Logged(body.find(":*]") != std::string::npos));
    } else if (kind == "$") {
        EXPECT_EQ(body, Run("ko_cmd_tool", SplitWords(rest), "")) << title;
    } else if (kind == "posted") {
        PlayedPage page;
        const Child console("ko_cmd_debug", {}, Child::Io::kPipes);
        console.Type(rest.replace(rest.find(' '), 1, "\n") + "\n");
        EXPECT_EQ(body, page.TakeRequest()) << title;
        page.Reply({}, sizeof(std::int32_t));
    } else if (kind == "is") {
        EXPECT_EQ(Expand(body), ReadFile(rest));
    } else if (kind.find('.') != std::string::npos) {
        m_root.Write(title, Expand(body));
    } else if (!kind.empty()) {
        ADD_FAILURE() << "no section is called " << title;
    }
}

std::vector<fs::path> CaseFiles() {
    std::vector<fs::path> files;
    for (const auto& entry : fs::recursive_directory_iterator(SourcePath("tests/cases"))) {
        if (entry.path().extension() == ".case") {
            files.push_back(entry.path());
        }
    }
    return files;
}

class CaseTest : public testing::TestWithParam<fs::path> {};

}  // namespace

TEST_P(CaseTest, HappensAsWritten) {
    Case played;
    std::istringstream rows(ReadFile(GetParam()) + "--- stop\n");
    std::string title;
    std::string body;
    for (std::string row; std::getline(rows, row);) {
        if (row.rfind("--- ", 0) == 0) {
            played.Play(title, body);
            title = row.substr(4);
            body.clear();
        } else {
            body += row + "\n";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, CaseTest, testing::ValuesIn(CaseFiles()),
                         [](const auto& file) { return file.param.stem().string(); });
