// Conversations with programs, written as text: the files tests/cases/*.txt that have suites.
// tests/cases/protocol.txt explains how they are written.
#pragma once

#include <string>

// Carries out the steps; the test fails when the transcript is not the expected one. Lines of the
// transcript that match the pattern are left out.
void CheckConversation(const std::string& steps, const std::string& expected,
                       const std::string& left_out = "");

// Registers a test for every case of a file under tests/cases/.
bool RegisterConversations(const char* file_name);
