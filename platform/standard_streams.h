#pragma once

// The first call of every program: puts /dev/null in the place of each standard stream that is
// closed, so that no file that the program opens takes it. Using the stream fails as it would have.
void OpenClosedStreams();

// The last call of a program whose standard output is its result: `status`; but `failure`, after a
// message, where `status` is 0 and the result could not all be written.
int FinishOutput(const char* program, int status, int failure);

// Prints the message and the text of errno to standard error, as perror does, behind everything
// that was printed to standard output before. Waits where writing that waits. Any thread.
void PrintSystemError(const char* message);
