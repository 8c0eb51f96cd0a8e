#include "frame/startup.h"
#include "platform/channel.h"
#include "platform/system.h"
#include "protocol/interpreter.h"

#include <cstdio>

int main(int argument_count, char** arguments) {
    PrepareProcess(Interrupts::IGNORED);
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    // A line goes out at once, and whole: a front end that gets pieces waits for the rest.
    static char line_buffer[BUFSIZ];
    std::setvbuf(stdout, line_buffer, _IOLBF, sizeof line_buffer);
    Initialize(argument_count, arguments);
    CommandLine line;
    for (ReceiveCommand(line); line != QUIT_COMMAND; ReceiveCommand(line)) {
        ParseCommand(line);
    }
    Finalize();
    return 0;
}
