#include <cstdio>

#include "format/printable.h"
#include "tools/call/prepared_request.h"
#include "tools/commands.h"
#include "tools/interval_timer.h"
#include "tools/report.h"
#include "tools/table.h"
#include "tools/text.h"
#include "tools/watch/screen.h"

namespace {

constexpr std::size_t kSummaryWidth = 80;  // columns

using Cells = std::vector<std::string>;

// A row for each record, and one for a sample without any.
void PrintCsv(std::size_t values, const Sample& sample) {
    const std::string time = IsoTime(sample.time);
    if (sample.records.empty()) {
        PrintLine(CsvRow({time, "", sample.outcome.reason}, Cells(values)));
    }
    for (std::size_t i = 0; i < sample.records.size(); ++i) {
        PrintLine(CsvRow({time, std::to_string(i + 1), ""}, RecordTexts(sample.records[i])));
    }
}

void PrintJson(const KoFileParse::KoCmdInfo& cmd, const Sample& sample, JsonInt64 int64) {
    Report report("sample", sample.time);
    if (sample.outcome.status == kExitDone) {
        report.Add("records", RecordsJson(cmd, sample.records, int64));
    } else {
        report.Add("error", sample.outcome.reason);
    }
    report.Print(true);
}

// False when the watch is to end. A stopped one leaves the screen to others.
bool AwaitBeat(IntervalTimer& timer, const WatchScreen& screen) {
    for (int signal = timer.Wait(); signal != 0; signal = timer.Wait()) {
        if (signal == SIGTSTP) {
            std::fputs(WatchScreen::kLeave, stdout);
            std::fflush(stdout);
            std::raise(SIGSTOP);
            std::fputs(WatchScreen::kEnter, stdout);
        } else if (signal != SIGWINCH) {
            return false;
        }
        screen.Draw();
    }
    return true;
}

}  // namespace

int RunWatch(const CommandLine& line) {
    PreparedCall call;
    if (!Prepare(line, call)) {
        return kExitNotSent;
    }
    const Cells names = ValueNames(*call.cmd);
    const bool drawn = OutputIsTerminal() && !line.csv && !line.json;
    IntervalTimer timer(line.interval,
                        drawn ? std::vector<int>{SIGWINCH, SIGTSTP} : std::vector<int>());
    WatchScreen screen(Printable(line.words[0] + " " + line.words[1]), names);
    if (drawn) {
        std::fputs(WatchScreen::kEnter, stdout);
        screen.Draw();
    } else if (!line.json) {
        PrintLine(CsvRow({"time", "record", "error"}, names));
    }
    for (std::size_t left = line.count; left != 0; --left) {
        Sample sample = {std::chrono::system_clock::now(), {}, {}};
        android::Parcel reply;
        const auto goOn = [] { return !IntervalTimer::IsOver(); };
        sample.outcome = Send(call, {line.timeout, false, goOn}, reply, sample.records);
        if (drawn) {
            screen.Add(sample);
            screen.Draw();
        } else if (line.json) {
            PrintJson(*call.cmd, sample, *line.json);
        } else {
            PrintCsv(names.size(), sample);
        }
        if (std::fflush(stdout) != 0 || left == 1 || !AwaitBeat(timer, screen)) {
            break;
        }
    }
    if (drawn) {
        std::fputs(WatchScreen::kLeave, stdout);
        for (const std::string& text : screen.Lines(kSummaryWidth)) {
            PrintLine(text);
        }
    }
    return kExitDone;
}
