#include "platform/is_blank.h"

#include <cstring>

int IsBlank(const char* line) {
    return line == nullptr || line[std::strspn(line, " \t")] == '\0' ? 1 : 0;
}
