#pragma once

// The first call of every program: puts /dev/null in the place of each standard stream that is
// closed, so that no file that the program opens takes it. Using the stream fails as it would have.
void OpenClosedStreams();

// Hands out what was printed. False if that, or anything printed before, failed.
bool FlushOutput();

// The last call of a program with a result on standard output. Returns `status`. If output was
// lost, prints a message and returns `failure` in place of 0.
int FinishOutput(const char* program, int status, int failure);

// Prints the message and the text of errno to standard error, as perror does, after everything
// that was printed to standard output before. Waits if writing that waits. Any thread.
void PrintSystemError(const char* message);
