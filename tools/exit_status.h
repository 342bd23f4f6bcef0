#pragma once

// What ko_cmd_tool tells a script.
enum ExitStatus : int {
    kExitDone = 0,
    kExitFailed = 1,    // errors in the catalogue, or a result that could not be printed
    kExitUsage = 2,     // the command line is wrong
    kExitNotSent = 3,   // no such catalogue, module or command, or a refused argument
    kExitNoAnswer = 4,  // no answer in time
    kExitRefused = 5,   // the service refused
    kExitPage = 6,      // the page cannot be used, or the reply does not fit it or its format
    kExitBusy = 7,      // others used the page all the time; nothing was sent
};
