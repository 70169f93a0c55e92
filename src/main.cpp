#include "shell/program.h"

int main(int argc, char** argv) {
    return tw::runProgram(argc, argv);
}
