// Conversations with programs, written as text in files under tests/cases/. The head of
// protocol.txt there explains the format.
#pragma once

#include <string>

// Carries out the steps. The test fails if the transcript differs from the expected one. Lines of
// the transcript that match the pattern are ignored.
void CheckConversation(const std::string& steps, const std::string& expected,
                       const std::string& left_out = "");

// Registers a test for every case of a file under tests/cases/.
bool RegisterConversations(const char* file_name);
