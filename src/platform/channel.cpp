#include "platform/channel.h"

#include "platform/system.h"

#include <cstring>

namespace {

// For a console, WaitingInput returns a number of events. Up to this many events do not count as
// waiting input: every typed key gives two events (press and release), so a line has more.
constexpr int CONSOLE_QUIET_EVENTS = 1;

std::uint8_t in_buffer = 0;         // 1 while my_buffer holds a line
CommandLine my_buffer = "";         // a line that was polled but not taken yet
std::int32_t command_timestamp = 0; // number of lines read so far
std::uint8_t init = 0;              // 1 once `pipe` has its value
std::uint8_t pipe = 0;              // 1 if standard input is a pipe or a file, 0 for a console

constexpr int END_OF_INPUT = -1;
// Returns the next byte, or END_OF_INPUT.
int ReadInputByte() {
    char byte = 0;
    return ReadInput({&byte, 1}) == 1 ? static_cast<unsigned char>(byte) : END_OF_INPUT;
}

} // namespace

bool IsInputWaiting() {
    if (!init) {
        init = 1;
        pipe = !IsConsoleInput();
        if (!pipe) QuietConsole();
    }
    const int waiting = WaitingInput();
    if (waiting == INPUT_UNKNOWN) return true;
    return waiting > (pipe ? 0 : CONSOLE_QUIET_EVENTS);
}

void NextBuffer(CommandLine& line) {
    std::size_t length = 0;
    bool cut = false;
    int byte = ReadInputByte();
    if (byte == END_OF_INPUT) {
        line[QUIT_COMMAND.copy(line, COMMAND_SIZE - 1)] = '\0';
        return;
    }
    for (; byte != '\n' && byte != END_OF_INPUT; byte = ReadInputByte()) {
        if (length < COMMAND_SIZE - 1) {
            line[length++] =
                byte == '\0' ? ' ' : static_cast<char>(byte); // a NUL would end the C string
        } else {
            cut = true;
        }
    }
    if (byte == '\n' && !cut && length > 0 && line[length - 1] == '\r') --length;
    line[length] = '\0';
}

bool NextCommand(CommandLine& line, std::int32_t* timestamp, bool consume) {
    std::uint8_t have_command = 1;
    if (in_buffer) {
        std::memcpy(line, my_buffer, COMMAND_SIZE);
        if (consume) in_buffer = 0;
    } else if (consume) {
        NextBuffer(line);
        ++command_timestamp;
    } else if (IsInputWaiting()) {
        NextBuffer(my_buffer);
        std::memcpy(line, my_buffer, COMMAND_SIZE);
        in_buffer = 1;
        ++command_timestamp;
    } else {
        have_command = 0;
    }
    if (timestamp) *timestamp = command_timestamp;
    return have_command;
}

void ReceiveCommand(CommandLine& line) { NextCommand(line, nullptr, true); }

void SendCommand(std::string_view text) {
    WriteOutput(text);
    WriteOutput("\n");
}
