#include "tool/Terminal.h"

std::vector<std::string> utf8Arguments(int count, char** arguments) {
    return {arguments + 1, arguments + count};
}

void showUtf8() {}
