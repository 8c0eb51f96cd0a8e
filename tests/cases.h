// Named cases of one behaviour. Each is a test of its own, `Suite.Name`. They are rows of a table
// or, if they are all text, lines of a file under tests/cases/.
#pragma once

#include <gtest/gtest.h>
#include <span>
#include <string>
#include <vector>

template <typename Case>
using CheckOfCase = void (*)(const Case&);

template <typename Case>
struct CaseTest : testing::Test {
    CaseTest(const Case& tested, CheckOfCase<Case> check_it) : test(tested), check(check_it) {}
    void TestBody() override { check(test); }

    const Case& test;
    CheckOfCase<Case> check;
};

// Registers a test for every case, named by the case's field `name`. The cases must live as long as
// the program. Returns true, so that an initializer can make the call at start-up:
//
//     const bool ARE_CLAIMS_REGISTERED = RegisterCases<Claim>("Protocol/Claims", CLAIMS, Check);
template <typename Case>
bool RegisterCases(const char* suite, std::span<const Case> cases, CheckOfCase<Case> check) {
    for (const Case& test : cases) {
        testing::RegisterTest(
            suite, std::string(test.name).c_str(), nullptr, nullptr, __FILE__, __LINE__,
            [&test, check]() -> CaseTest<Case>* { return new CaseTest<Case>(test, check); });
    }
    return true;
}

// A line of a file of cases, "NAME | FIELD | FIELD ...". In a file of several suites the suite's
// name comes first: "Claims.Stalemate" for the suite "Protocol/Claims".
struct TextCase {
    std::string name;
    std::vector<std::string> fields; // those after the name; missing ones are empty
};

// Registers a test for every line of the suite. Empty lines and lines that begin with '#' are
// skipped.
bool RegisterFile(const char* suite, const char* file_name, CheckOfCase<TextCase> check);

// The text of a file under tests/cases/.
std::string ReadCases(const char* file_name);
