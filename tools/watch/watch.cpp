#include <cstdio>

#include "format/printable.h"
#include "platform/standard_streams.h"
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
        const std::string error = sample.failure ? sample.failure->reason : "";
        PrintLine(CsvRow({time, "", error}, Cells(values)));
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

// False if the watch is to end. A stopped one leaves the screen to others.
bool AwaitNext(IntervalTimer& timer, const WatchScreen& screen) {
    for (int signal = timer.Wait(); signal != 0; signal = timer.Wait()) {
        if (signal == SIGTSTP) {
            WatchScreen::Leave();
            std::raise(SIGSTOP);
            screen.Enter();
        } else if (signal != SIGWINCH) {
            return false;
        } else {
            screen.Draw();
        }
    }
    return true;
}

}  // namespace

int RunWatch(const CommandLine& line) {
    PreparedRequest prepared;
    if (const auto failure = Prepare(line, prepared)) {
        return Complain(*failure);
    }
    const Cells names = ValueNames(*prepared.cmd);
    const bool onScreen = OutputIsTerminal() && !line.csv && !line.json;
    IntervalTimer timer(line.interval,
                        onScreen ? std::vector{SIGWINCH, SIGTSTP} : std::vector<int>());
    WatchScreen screen(Printable(line.words[0] + " " + line.words[1]), names);
    if (onScreen) {
        screen.Enter();
    } else if (!line.json) {
        PrintLine(CsvRow({"time", "record", "error"}, names));
    }
    for (std::size_t left = line.count; left != 0; --left) {
        const Sample sample = TakeSample(prepared, line.timeout);
        if (onScreen) {
            screen.Add(sample);
            screen.Draw();
        } else if (line.json) {
            PrintJson(*prepared.cmd, sample, *line.json);
        } else {
            PrintCsv(names.size(), sample);
        }
        if (!FlushOutput() || !WriteOutput("") || left == 1 || !AwaitNext(timer, screen)) {
            break;
        }
    }
    if (onScreen) {
        WatchScreen::Leave();
        for (const std::string& text : screen.Lines(kSummaryWidth)) {
            PrintLine(text);
        }
    }
    return OutputStatus();
}
