#include "frame/startup.h"
#include "platform/channel.h"
#include "platform/system.h"
#include "protocol/interpreter.h"

#include <cstdio>

int main(int argument_count, char** arguments) {
    PrepareProcess(Interrupts::IGNORED);
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    const auto words = CommandLineWords(argument_count, arguments);
    Initialize(static_cast<int>(words.size()), words.data());
    CommandLine line;
    for (ReceiveCommand(line); line != QUIT_COMMAND; ReceiveCommand(line)) {
        ParseCommand(line);
    }
    Finalize();
    return 0;
}
