#include <cstdio>

#include "format/printable.h"
#include "tools/call/prepared_request.h"
#include "tools/commands.h"
#include "tools/interval_timer.h"
#include "tools/output.h"
#include "tools/report.h"
#include "tools/table.h"
#include "tools/text.h"
#include "tools/watch/screen.h"

namespace {

constexpr std::size_t kSummaryWidth = 80;  // columns

using Cells = std::vector<std::string>;

Sample TakeSample(const PreparedRequest& prepared, std::chrono::milliseconds timeout) {
    Sample sample = {std::chrono::system_clock::now(), {}, {}};
    sample.failure = Send(prepared, {timeout, false}, sample.reply);
    return sample;
}

// Hands a sample to `show` at every interval until the command line's count is reached, output
// fails, or `onSignal` is false for a signal that the timer returned.
template <typename Show, typename OnSignal>
void TakeSamples(const CommandLine& line, const PreparedRequest& prepared, IntervalTimer& timer,
                 Show show, OnSignal onSignal) {
    for (std::size_t left = line.count; left != 0; --left) {
        show(TakeSample(prepared, line.timeout));
        if (std::fflush(stdout) != 0 || !WriteOutput("") || left == 1) {
            return;
        }
        for (int signal = timer.Wait(); signal != 0; signal = timer.Wait()) {
            if (!onSignal(signal)) {
                return;
            }
        }
    }
}

// A stopped watch leaves the screen to others.
void WatchOnScreen(const CommandLine& line, const PreparedRequest& prepared) {
    IntervalTimer timer(line.interval, {SIGWINCH, SIGTSTP});
    WatchScreen screen(Printable(line.words[0] + " " + line.words[1]), ValueNames(*prepared.cmd));
    WatchScreen::Enter();
    screen.Draw();
    const auto show = [&screen](const Sample& sample) {
        screen.Add(sample);
        screen.Draw();
    };
    const auto onSignal = [&screen](int signal) {
        if (signal == SIGTSTP) {
            WatchScreen::Leave();
            std::raise(SIGSTOP);
            WatchScreen::Enter();
        } else if (signal != SIGWINCH) {
            return false;
        }
        screen.Draw();
        return true;
    };
    TakeSamples(line, prepared, timer, show, onSignal);
    WatchScreen::Leave();
    for (const std::string& text : screen.Lines(kSummaryWidth)) {
        PrintLine(text);
    }
}

void PrintJson(const KoFileParse::KoCmdInfo& cmd, const Sample& sample, JsonInt64 int64) {
    Report report("sample", sample.time);
    if (sample.failure) {
        report.Add("error", sample.failure->reason);
    } else {
        report.Add("records", RecordsJson(cmd, sample.reply.records, int64));
    }
    report.Print(true);
}

// A row for each record, and one for a sample without any.
void PrintCsv(std::size_t values, const Sample& sample) {
    const std::string time = IsoTime(sample.time);
    if (sample.reply.records.empty()) {
        PrintLine(CsvRow({time, "", sample.failure ? sample.failure->reason : ""}, Cells(values)));
    }
    std::size_t number = 0;
    for (const ReplyRecord& record : sample.reply.records) {
        Cells texts;
        for (const ParcelField& field : record) {
            texts.push_back(ShownText(FieldText(field.value), false));
        }
        PrintLine(CsvRow({time, std::to_string(++number), ""}, texts));
    }
}

void WatchAsLines(const CommandLine& line, const PreparedRequest& prepared) {
    IntervalTimer timer(line.interval);
    const Cells names = ValueNames(*prepared.cmd);
    if (!line.json) {
        PrintLine(CsvRow({"time", "record", "error"}, names));
    }
    const auto show = [&](const Sample& sample) {
        if (line.json) {
            PrintJson(*prepared.cmd, sample, *line.json);
        } else {
            PrintCsv(names.size(), sample);
        }
    };
    TakeSamples(line, prepared, timer, show, [](int) { return false; });
}

}  // namespace

int RunWatch(const CommandLine& line) {
    PreparedRequest prepared;
    if (!Prepare(line, prepared)) {
        return kExitNotSent;
    }
    const bool onScreen = OutputIsTerminal() && !line.csv && !line.json;
    (onScreen ? WatchOnScreen : WatchAsLines)(line, prepared);
    return OutputStatus();
}
