#include "uci/lines.h"

#include "platform/channel.h"
#include "platform/system.h"

#include <cassert>
#include <cstddef>

void (*info_listener)(std::string_view text) = nullptr;

namespace {

constexpr std::size_t BLOCK_SIZE = 4096;
constexpr std::size_t MAX_LINE_SIZE = std::size_t{1} << 20;

std::string received;     // bytes read but not yet taken as lines
std::size_t searched = 0; // bytes of `received` already searched for a line feed
std::string returned;
bool is_returned = false;
bool has_ended = false; // true after the end of the input

// Reads at most BLOCK_SIZE bytes and waits if no input is available. Cuts a line that is longer
// than MAX_LINE_SIZE.
void Receive() {
    char block[BLOCK_SIZE];
    const std::size_t count = ReadInput(block);
    has_ended = count == 0;
    if (received.size() == searched && searched > MAX_LINE_SIZE) received.resize(MAX_LINE_SIZE);
    searched = received.size();
    received.append(block, count);
}

// Takes the next line from `received`, without the line end. Returns false if no line is complete.
bool CutLine(std::string& line) {
    const std::size_t end = received.find('\n', searched);
    if (end == std::string::npos) {
        searched = received.size();
        return false;
    }
    line.assign(received, 0, end);
    if (line.ends_with('\r')) line.pop_back();
    received.erase(0, end + 1);
    searched = 0;
    return true;
}

bool TakeReturnedLine(std::string& line) {
    if (!is_returned) return false;
    is_returned = false;
    line = returned;
    return true;
}

// Stores the text after the last line feed in `line`, or QUIT_LINE if no text is left.
void EndInput(std::string& line) {
    line = received.empty() ? QUIT_LINE : received;
    received.clear();
    searched = 0;
}

} // namespace

bool TakeLine(std::string& line) {
    if (TakeReturnedLine(line)) return true;
    while (!CutLine(line)) {
        if (has_ended) {
            EndInput(line);
            return true;
        }
        if (!IsInputWaiting()) return false;
        Receive();
    }
    return true;
}

void WaitForLine(std::string& line) {
    while (!TakeLine(line)) {
        Receive();
    }
}

void ReturnLine(std::string_view line) {
    assert(!is_returned);
    returned = line;
    is_returned = true;
}

bool IsLineReturned() { return is_returned; }

void ForgetLines() {
    received.clear();
    searched = 0;
    is_returned = false;
    has_ended = false;
}

void Tell(std::string_view line) { WriteOutput(std::string(line) + '\n'); }

void TellInfo(std::string_view text) {
    if (info_listener) {
        info_listener(text);
    } else {
        Tell("info string " + std::string(text));
    }
}
