#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifdef KO_BENCH_LIBEDIT
#include <editline/readline.h>
#else
#include <readline/history.h>
#include <readline/readline.h>
#endif

#include "bench/bench.h"

namespace {

char* NextWord(const char*, int state) {
    static int next;
    next = state == 0 ? 0 : next + 1;
    return next < kBenchWords ? strdup(BenchWord(next).c_str()) : nullptr;
}

int ListWords(int, int) {
    char** words = rl_completion_matches("", NextWord);
    rl_display_match_list(words, kBenchWords, 4);
    for (char** word = words; *word != nullptr; ++word) {
        std::free(*word);
    }
    std::free(words);
    rl_forced_update_display();
    return 0;
}

}  // namespace

// The console's peer among line editors: the prompt, a history, and words listed on TAB, all at
// once.
int main() {
    rl_initialize();
    rl_variable_bind("enable-bracketed-paste", "off");
    rl_variable_bind("page-completions", "off");
    rl_add_defun("list-words", ListWords, '\t');
    while (char* line = readline("TV $")) {
        add_history(line);
        std::free(line);
    }
    return 0;
}
