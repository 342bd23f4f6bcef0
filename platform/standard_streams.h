#pragma once

// Prints the message and the text of errno to standard error, as perror does, behind everything
// that was printed to standard output before. Waits where writing that waits. Any thread.
void PrintSystemError(const char* message);
