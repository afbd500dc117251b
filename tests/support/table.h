// SPDX-License-Identifier: MIT
#ifndef TESTS_SUPPORT_TABLE_H
#define TESTS_SUPPORT_TABLE_H

#include <string>

#include <gtest/gtest.h>

/// Declares Suite, a fixture that derives from Base and runs its TEST_P for each row of the array
/// `rows` of Case, whose member `name` names the test.
#define TABLE(Suite, Base, Case, rows)                                                             \
    class Suite : public Base, public testing::WithParamInterface<Case> {};                        \
    INSTANTIATE_TEST_SUITE_P(Rows, Suite, testing::ValuesIn(rows),                                 \
                             [](const auto &row) { return std::string(row.param.name); })

#endif
