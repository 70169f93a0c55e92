// The program as it starts, which ends as soon as it is ready for its user.
#include "shell/program.h"
#include "start/startwatch.h"

#include <memory>

int main(int argc, char** argv) {
    std::unique_ptr<bench::StartWatch> watch;
    return tw::runProgram(argc, argv, [&] { watch = std::make_unique<bench::StartWatch>(); });
}
