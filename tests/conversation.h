// Tests of programs by conversations: lines sent to a program and its answers. The comment at the
// top of tests/cases/protocol.txt explains the format.
#pragma once

#include <string>

// Carries out the steps. The test fails if the transcript differs from `expected`. Ignores lines of
// the transcript that match the pattern `left_out`.
void CheckConversation(const std::string& steps, const std::string& expected,
                       const std::string& left_out = "");

// Registers a test for every case of a file under tests/cases/.
bool RegisterConversations(const char* file_name);
