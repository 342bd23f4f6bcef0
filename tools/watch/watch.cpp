#include <csignal>

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

// Those that the screen uses, and others that would leave the terminal changed.
constexpr std::initializer_list<int> kScreenSignals = {SIGTSTP, SIGWINCH, SIGUSR1, SIGUSR2};

using Cells = std::vector<std::string>;

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
        WriteOutput(OutputLine(CsvRow({time, "", error}, Cells(values))));
    }
    std::size_t number = 0;
    for (const ReplyRecord& record : sample.reply.records) {
        Cells texts;
        for (const ParcelField& field : record) {
            texts.push_back(ShownText(FieldText(field.value), false));
        }
        WriteOutput(OutputLine(CsvRow({time, std::to_string(++number), ""}, texts)));
    }
}

// Leaves the screen to others until a shell resumes it; as the default action of SIGTSTP, not if
// no shell can.
void Suspend(const WatchScreen& screen) {
    sigset_t suspend;
    sigemptyset(&suspend);
    sigaddset(&suspend, SIGTSTP);
    WatchScreen::Leave();
    std::raise(SIGTSTP);
    pthread_sigmask(SIG_UNBLOCK, &suspend, nullptr);
    pthread_sigmask(SIG_BLOCK, &suspend, nullptr);
    screen.Enter();
}

// What a signal, or 0, asks of the screen. False if it ends the watch.
bool GoOn(int signal, const WatchScreen& screen) {
    if (signal == SIGTSTP) {
        Suspend(screen);
    } else if (signal == SIGWINCH) {
        screen.Draw();
    }
    return signal == 0 || signal == SIGTSTP || signal == SIGWINCH;
}

// False if the watch is to end.
bool AwaitNext(IntervalTimer& timer, const WatchScreen& screen) {
    int signal = 0;
    do {
        signal = timer.Wait();
    } while (signal != 0 && GoOn(signal, screen));
    return signal == 0;
}

}  // namespace

int RunWatch(const CommandLine& line) {
    PreparedRequest prepared;
    if (const auto failure = Prepare(line, prepared)) {
        return Complain(*failure);
    }
    const Cells names = ValueNames(*prepared.cmd);
    const bool onScreen = OutputIsTerminal() && !line.csv && !line.json;
    IntervalTimer timer(line.interval, onScreen ? kScreenSignals : std::initializer_list<int>());
    const std::string interval = " interval=" + std::to_string(line.interval.count()) + "ms";
    WatchScreen screen(Printable(line.words[0] + " " + line.words[1]) + interval, names);
    if (onScreen) {
        screen.Enter();
    } else if (!line.json) {
        WriteOutput(OutputLine(CsvRow({"time", "record", "error"}, names)));
    }
    const ExchangeLimits limits = {line.timeout, false,
                                   [&] { return GoOn(timer.TakeSignal(), screen); }};
    for (std::size_t left = line.count; left != 0; --left) {
        Sample sample = {std::chrono::system_clock::now(), {}, {}};
        sample.failure = Send(prepared, limits, sample.reply);
        if (onScreen) {
            screen.Add(sample);
            screen.Draw();
        } else if (line.json) {
            PrintJson(*prepared.cmd, sample, *line.json);
        } else {
            PrintCsv(names.size(), sample);
        }
        if (!WriteOutput("") || left == 1 || !AwaitNext(timer, screen)) {
            break;
        }
    }
    if (onScreen) {
        screen.End();
    }
    return OutputStatus();
}
