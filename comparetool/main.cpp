#include "comparing.h"
#include "platform/runtimeerror.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv) {
    using namespace comparetool;
    const QCoreApplication application(argc, argv);
    const auto options = parseOptions(QCoreApplication::arguments());
    if (const auto* refusal = std::get_if<OptionsRefusal>(&options)) {
        if (refusal->help)
            return std::printf("%s\n", qUtf8Printable(refusal->text.trimmed())) < 0 ? NotDone : Equal;
        tell(refusal->text);
        return NotDone;
    }
    try {
        return compare(std::get<Options>(options));
    } catch (...) {
        tell(platform::currentError().description());
        return NotDone;
    }
}
