#pragma once

#include <functional>

namespace tw {

/// Runs the program to its end; its exit code. `made` is called once, when the application object stands and
/// before there is a window.
int runProgram(int& argc, char** argv, const std::function<void()>& made = {});

}  // namespace tw
