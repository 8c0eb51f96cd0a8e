// Named cases of one behaviour, each a test of its own: `Suite.Name`.
#pragma once

#include <gtest/gtest.h>
#include <span>

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
// the program. The value only serves to make the call at start-up:
//
//     const bool ARE_CLAIMS_REGISTERED = RegisterCases<Claim>("Protocol/Claims", CLAIMS,
//     CheckClaim);
template <typename Case>
bool RegisterCases(const char* suite, std::span<const Case> cases, CheckOfCase<Case> check) {
    for (const Case& test : cases) {
        testing::RegisterTest(
            suite, test.name, nullptr, nullptr, __FILE__, __LINE__,
            [&test, check]() -> CaseTest<Case>* { return new CaseTest<Case>(test, check); });
    }
    return true;
}
