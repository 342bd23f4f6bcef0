#include <sys/wait.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

#include "tests/support/case_text.h"
#include "tests/support/child.h"
#include "tests/support/log_daemon.h"
#include "tests/support/played_page.h"
#include "tests/support/test_root.h"

namespace {

namespace fs = std::filesystem;

// For the shell: the programs, through a link whose path needs no quotes, and the service in the
// background once it serves.
constexpr char kPrograms[] =
    "exec 2>stderr; export SHELL=/bin/sh; ln -sfn '" KO_BIN_DIR "' bin; BIN=\"" KO_EMULATOR
    " $PWD/bin\"; KO=$BIN/ko_cmd_debug; TOOL=$BIN/ko_cmd_tool; SERVICE=$BIN/ko_tv_service; "
    "SCRIPTS='" KO_SOURCE_DIR
    "/script'; "
    "serve() { : >service.log; $SERVICE \"$@\" >>service.log 2>&1 & "
    "await 'grep -q serving service.log'; }\n"
    "await() { until eval \"$1\"; do kill -0 $! || exit 99; sleep 0.01; done; }\n"
    "posted() { await '[ \"$(head -c 1 root/data/vendor/.tv | od -An -tx1)\" = \" 01\" ]'; }\n";

constexpr char kPrompt[] = "TV $";

// A row of a table: "LINE => OUTCOME", or "LINE <= LENGTH BYTES => OUTCOME" with a reply. Nothing
// may come of a line.
struct TableRow {
    explicit TableRow(const std::string& row) : left(row.substr(0, row.find(" =>"))) {
        const std::size_t arrow = left.find(" <= ");
        line = left.substr(0, arrow);
        reply = arrow != std::string::npos ? SplitWords(left.substr(arrow + 4)) : Words();
    }

    std::string left;
    std::string line;
    Words reply;
};

// A table's row as it was played: what the program printed in one row, its rules as "=", behind
// the arguments of what it posted.
std::string PlayedRow(const TableRow& row, const std::string& request, std::string printed) {
    constexpr std::size_t kArguments = 36;  // characters, for header and instruction
    std::string outcome = request.size() > kArguments && row.reply.empty()
                              ? request.substr(kArguments)
                              : std::string();
    std::replace(outcome.begin(), outcome.end(), '\n', ' ');
    outcome += Replace(printed, std::string(27, '=') + "\n", "=\n");
    std::replace(outcome.begin(), outcome.end(), '\n', '/');
    outcome.erase(outcome.find_last_not_of(" /") + 1);
    return Expand(row.left) + " =>" + (outcome.empty() ? "" : " " + outcome) + "\n";
}

// Each file of tests/cases is played on a television of its own. A row that begins with "//" is a
// comment, a row "--- TITLE" begins a section:
//   install PATH         puts a catalogue file of the source tree, or a folder's two, in place
//   service OPTIONS      starts the stand-in service; "stop" ends it
//   reply LENGTH BYTES REMARK  answers a request of the next program with the bytes, as a reply of
//                        that length, true or not; several answer in turn
//   keys                 runs the console; the body is typed
//   shell                runs the body with the programs as $KO, $SERVICE and $TOOL and the source
//                        tree's script folder as $SCRIPTS; "serve" starts the stand-in as $!, with
//                        its output in service.log; "await" waits for a condition and "posted" for
//                        a request in the page, while $! lives
//   output               what either printed, then standard error's rows behind "! ", and the exit
//                        status unless it is 0
//   logd                 plays the log daemon to the programs behind it
//   log                  what they have logged since
//   $ WORDS              runs the tool; the body is what it prints, without marks
//   typed MODULE         a table of lines typed in the module, in one console, and what comes of
//                        each; without a service or a reply each is answered with status 0
//   tool WORDS           a table of words behind these, and the exit status and output of the tool
//   check                runs the check over mods.conf and cmds.conf, which hold its findings
// A title with a dot is a file to write; commands without modules get the module "m". Words, keys,
// tables, outputs and files may have the marks of Expand, outputs "..." for any text in a row, and
// catalogue files those of ReadCatalogue.
class Case {
public:
    void Play(const std::string& title, const std::string& body) {
        const std::string kind = title.substr(0, title.find(' '));
        const std::string rest = title.substr(std::min(kind.size() + 1, title.size()));
        const std::map<std::string, std::function<void()>> sections = {
            {"", [] {}},
            {"install", [&] { TestRoot::Install(rest); }},
            {"stop", [&] { m_service.reset(); }},
            {"service", [&] { Serve(rest); }},
            {"reply", [&] { AddReply(SplitWords(rest)); }},
            {"keys", [&] { m_printed = Run("exec $KO", Expand(body)); }},
            {"shell", [&] { m_printed = Run(body); }},
            {"output",
             [&] {
                 const std::string exit =
                     m_exit == 0 ? "" : "exit " + std::to_string(m_exit) + "\n";
                 ExpectRows(Expand(body), m_printed + exit, title);
             }},
            {"$", [&] { ExpectRows(body, RunTool(rest), title); }},
            {"logd", [&] { m_log.emplace(); }},
            {"log", [&] { ExpectRows(body, m_log->TakeRows(), title); }},
            {"typed", [&] { PlayTyped(rest, body); }},
            {"tool", [&] { PlayTool(rest, body); }},
            {"check", [&] { Check(); }},
        };
        if (kind.find('.') != std::string::npos) {
            Write(title, body);
        } else if (sections.count(kind) == 1) {
            sections.at(kind)();
        } else {
            ADD_FAILURE() << "no section is called " << title;
        }
    }

private:
    std::string Run(const std::string& script, const std::string& input = {}) {
        Child child(kPrograms + script);
        child.Type(input);
        child.CloseInput();
        for (const Words& reply : std::exchange(m_replies, {})) {
            EXPECT_NE("", m_page->TakeRequest(child)) << "for the reply " << reply.back();
            m_page->Reply(reply[1], std::stoul(reply[0]));
        }
        std::string printed = child.ReadRest();
        m_exit = WEXITSTATUS(child.Wait());
        std::istringstream errors(ReadFile("stderr"));
        for (std::string row; std::getline(errors, row);) {
            printed += "! " + row + "\n";
        }
        return printed;
    }

    std::string RunTool(const std::string& words) {
        std::string script = "exec $TOOL";
        for (const std::string& word : SplitWords(words)) {
            script += " '" + word + "'";
        }
        return Run(script);
    }

    // Types the row's line and plays the service, where there is none.
    std::string Type(Child& console, const TableRow& row) {
        console.Type(Expand(row.line) + "\n");
        console.ReadUntil("\n\r");
        const std::string request = m_service ? "" : m_page->TakeRequest(console, kPrompt);
        if (!request.empty()) {
            const Words reply = row.reply.empty() ? Words{"4", std::string(4, '\0')} : row.reply;
            m_page->Reply(reply[1], std::stoul(reply[0]));
        }
        const std::string printed = console.ReadUntil(kPrompt);
        return PlayedRow(row, request, printed.substr(0, printed.rfind('\n') + 1));
    }

    void Serve(const std::string& options) {
        m_page.reset();
        m_service.reset();
        m_service = std::make_unique<Service>(options);
    }

    void AddReply(const Words& reply) {
        m_page.emplace();
        m_replies.push_back(reply);
    }

    static void PlayTable(const std::string& title, const std::string& table,
                          const std::function<std::string(const TableRow&)>& play) {
        std::istringstream rows(table);
        std::string played;
        const bool failed = testing::Test::HasFailure();
        for (std::string row; std::getline(rows, row) && testing::Test::HasFailure() == failed;) {
            played += play(TableRow(row));
        }
        ExpectRows(Expand(table), played, title);
    }

    void PlayTyped(const std::string& module, const std::string& table) {
        m_page.reset();
        if (!m_service) {
            m_page.emplace();
        }
        Child console(kConsole);
        console.ReadUntil(kPrompt);
        Type(console, TableRow(module));
        PlayTable(module, table, [&](const TableRow& row) { return Type(console, row); });
    }

    void PlayTool(const std::string& words, const std::string& table) {
        PlayTable(words, table, [&](const TableRow& row) {
            if (!row.reply.empty()) {
                AddReply(row.reply);
            }
            const std::string printed = RunTool(words + " " + row.line);
            return PlayedRow(row, "", std::to_string(m_exit) + "\n" + printed);
        });
    }

    void Check() {
        const std::string findings = m_findings["mods.conf"] + m_findings["cmds.conf"];
        ExpectRows(findings + "... error..., ... warning...\n", RunTool("check --catalogue ."),
                   "check");
        EXPECT_EQ(findings.find(": error: ") != std::string::npos ? 1 : 0, m_exit);
    }

    void Write(const std::string& path, const std::string& body) {
        if (fs::path(path).extension() != ".conf") {
            m_root.Write(path, Expand(body));
            return;
        }
        const std::string modules = fs::path(path).replace_filename("mods.conf");
        if (modules != path && !fs::exists(modules)) {
            Write(modules, "[m]+\n");
        }
        CatalogueText catalogue = ReadCatalogue(path, body);
        m_root.Write(path, catalogue.rows);
        m_findings[path] = std::move(catalogue.findings);
    }

    TestRoot m_root;
    std::unique_ptr<Service> m_service;
    std::optional<PlayedPage> m_page;
    std::optional<LogDaemon> m_log;
    std::vector<Words> m_replies;
    std::map<std::string, std::string> m_findings;  // by file
    std::string m_printed;
    int m_exit = 0;  // the last program's
};

std::vector<fs::path> CaseFiles() {
    std::vector<fs::path> files;
    const fs::recursive_directory_iterator entries(SourcePath("tests/cases"));
    std::copy_if(begin(entries), end(entries), std::back_inserter(files),
                 [](const fs::path& path) { return path.extension() == ".case"; });
    std::sort(files.rbegin(), files.rend());  // the slowest one, turns, is not to be the last
    return files;
}

class CaseTest : public testing::TestWithParam<fs::path> {};

}  // namespace

TEST_P(CaseTest, HappensAsWritten) {
    Case played;
    std::string text;
    for (const std::string& row : Split(ReadFile(GetParam()), "\n")) {
        text += row.rfind("//", 0) == 0 ? "" : "\n" + row;
    }
    text.pop_back();
    for (const std::string& section : Split(text, "\n--- ")) {
        const std::size_t end = section.find('\n');
        played.Play(section.substr(0, end),
                    end != std::string::npos ? section.substr(end + 1) + "\n" : "");
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, CaseTest, testing::ValuesIn(CaseFiles()),
                         [](const auto& file) { return file.param.stem().string(); });
