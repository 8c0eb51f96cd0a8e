// Registers cases as tests. A case is a row of a table or a line of a file under tests/cases/. The
// test of a case is called `Suite.Name`.
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
// the program. Always returns true, so that the initializer of a constant can make the call:
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

// A case in a file: the line "NAME | FIELD | FIELD ...". In a file with several suites, NAME begins
// with the second part of the suite's name: "Plays.APromotion" is a case of the suite "Book/Plays".
struct TextCase {
    std::string name;
    std::vector<std::string> fields; // the fields after the name. Missing fields are empty.
};

// Reads a file under tests/cases/ and registers a test for every case of the suite. Skips empty
// lines and lines that begin with '#'.
bool RegisterFile(const char* suite, const char* file_name, CheckOfCase<TextCase> check);

// Returns the text of a file under tests/cases/. Aborts if there is no such file.
std::string ReadCases(const char* file_name);
