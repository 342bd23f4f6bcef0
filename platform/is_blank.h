#pragma once

// Non-zero when the line is null, empty, or made of blanks and tabs only.
int IsBlank(const char* line);
