#include "frame/startup.h"
#include "platform/channel.h"
#include "platform/system.h"
#include "protocol/interpreter.h"

#include <cstdio>

int main(int argument_count, char** arguments) {
    PrepareProcess();
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    Initialize(argument_count, arguments);
    CommandLine line;
    for (ReceiveCommand(line); line != QUIT_COMMAND; ReceiveCommand(line)) {
        ParseCommand(line);
    }
    Finalize();
    return 0;
}
